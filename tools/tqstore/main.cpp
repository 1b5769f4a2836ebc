#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "platform/Foundation/Print.hpp"
#include "platform/embedded/store/StoreSession.hpp"
#include "tools/tqstore/BuyCommand.hpp"
#include "tools/tqstore/Console.hpp"
#include "tools/tqstore/ProductsCommand.hpp"

namespace {

using namespace tqstore;

struct Arguments {
  GlobalOptions global;
  std::vector<std::string> products;
  BuyOptions purchase;
};

CLI::App* addProducts(CLI::App& app, Arguments& arguments) {
  auto* command = app.add_subcommand("products", "Show what the store sells");
  command->add_option("ID", arguments.products, "Only these products");
  return command;
}

CLI::App* addBuy(CLI::App& app, Arguments& arguments) {
  auto& purchase = arguments.purchase;
  auto* command = app.add_subcommand("buy", "Buy a product and show what happens");
  command->add_option("ID", purchase.productIdentifier, "The product to buy")->required();
  command->add_option("--quantity", purchase.quantity, "How many; the store sells 1 to 10 at once")
      ->type_name("N")
      ->capture_default_str();
  command->add_option("--user", purchase.user, "Account of the application's own user")
      ->type_name("NAME");
  command->add_flag("!--no-finish", purchase.finish, "Leave the transaction unfinished");
  auto* fail = command->add_option("--fail", purchase.failWith,
                                   "Let the purchase fail with this store error code");
  fail->type_name("CODE");
  command->add_flag("--cancel", purchase.cancel, "Let the user cancel the purchase")
      ->excludes(fail);
  return command;
}

void addGlobal(CLI::App& app, GlobalOptions& options) {
  app.add_option("--config", options.config, "The .storekit configuration that the store opens")
      ->envname("TQSTORE_CONFIG")
      ->type_name("FILE");
  app.add_option("--locale", options.locale,
                 "Language and region of products and prices, instead of the configuration's")
      ->type_name("LOCALE");
  app.add_flag("--json", options.json, "One JSON object a line on standard output, nothing else");
  app.set_version_flag("--version", "tqstore " TQSTORE_VERSION);
  app.require_subcommand(1);
  app.fallthrough();
  app.footer(
      "Exit status: 0 done, 1 the store said no, 2 wrong usage or input that cannot be read.\n"
      "Example: tqstore --config shop.storekit buy gems.100 --quantity 3");
}

std::unique_ptr<StoreKit::StoreSession> openStore(const std::string& config) {
  if (config.empty()) {
    complain("no configuration: name one with --config FILE or TQSTORE_CONFIG");
    return nullptr;
  }
  auto opening = StoreKit::StoreSession::open(config);
  for (const auto& problem : opening.problems) {
    const bool warning = problem.severity == StoreKit::ConfigurationProblem::Severity::warning;
    complain((warning ? "warning: " : "") + printable(problem.description()));
  }
  return std::move(opening.session);
}

int run(int argc, char** argv) {
  CLI::App app("The embedded in-app store on the command line", "tqstore");
  Arguments arguments;
  addGlobal(app, arguments.global);
  const auto* products = addProducts(app, arguments);
  addBuy(app, arguments);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kDone : kUsage;
  }
  if (arguments.global.json) {
    Foundation::setPrintHandler([](std::string_view message) { Foundation::warn(message); });
  }
  const auto session = openStore(arguments.global.config);
  if (!session) return kUsage;
  if (!arguments.global.locale.empty()) session->setLocale(arguments.global.locale);
  if (products->parsed()) return showProducts(*session, arguments.global, arguments.products);
  return buy(*session, arguments.global, arguments.purchase);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    complain(error.what());
    return kUsage;
  }
}
