#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/Foundation/Print.hpp"
#include "platform/embedded/store/StoreSession.hpp"
#include "tools/tqstore/BuyCommand.hpp"
#include "tools/tqstore/Console.hpp"
#include "tools/tqstore/LedgerCommands.hpp"
#include "tools/tqstore/ProductsCommand.hpp"

namespace {

using namespace tqstore;

struct Arguments {
  GlobalOptions global;
  std::vector<std::string> products;
  BuyOptions purchase;
  std::string transaction;
  std::string user;
  bool all = false;
  bool finishes = false;
  bool watch = false;
};

using Run = std::function<ExitStatus(StoreKit::StoreSession&)>;

// The commands of the program, and what each does once the store is open.
class Commands {
 public:
  Commands(CLI::App& app, Arguments& arguments) : app_(app), arguments_(arguments) {
    addProducts();
    addBuy();
    addLaunch();
    addRestore();
    addTransactions();
    addFinish();
  }

  [[nodiscard]] ExitStatus run(StoreKit::StoreSession& session) const {
    for (const auto& [command, run] : commands_) {
      if (command->parsed()) return run(session);
    }
    return kUsage;
  }

 private:
  CLI::App& add(const char* name, const char* description, Run run) {
    auto* command = app_.add_subcommand(name, description);
    commands_.emplace_back(command, std::move(run));
    return *command;
  }

  void addProducts() {
    auto& command = add("products", "Show what the store sells", [this](auto& session) {
      return showProducts(session, arguments_.global, arguments_.products);
    });
    command.add_option("ID", arguments_.products, "Only these products");
  }

  void addBuy() {
    auto& purchase = arguments_.purchase;
    auto& command = add("buy", "Buy a product and show what happens", [this](auto& session) {
      return buy(session, arguments_.global, arguments_.purchase);
    });
    command.add_option("ID", purchase.productIdentifier, "The product to buy")->required();
    command
        .add_option("--quantity", purchase.quantity, "How many; the store sells 1 to 10 at once")
        ->type_name("N")
        ->capture_default_str();
    command.add_option("--user", purchase.user, "Account of the application's own user")
        ->type_name("NAME");
    command.add_flag("!--no-finish", purchase.finish, "Leave the transaction unfinished");
    auto* fail = command.add_option("--fail", purchase.failWith,
                                    "Let the purchase fail with this store error code");
    fail->type_name("CODE");
    command.add_flag("--cancel", purchase.cancel, "Let the user cancel the purchase")
        ->excludes(fail);
  }

  void addLaunch() {
    auto& command = add(
        "launch", "Start as an application does, and show what it is given",
        [this](auto&) { return launch(arguments_.global, arguments_.finishes, arguments_.watch); });
    command.add_flag("--finish", arguments_.finishes, "Finish what is delivered");
    command.add_flag("--watch", arguments_.watch, "Stay, and show what other programs do");
  }

  void addRestore() {
    auto& command = add(
        "restore", "Bring back what was bought and can be had again",
        [this](auto&) { return restore(arguments_.global, arguments_.user, arguments_.finishes); });
    command.add_option("--user", arguments_.user, "Only what was bought for this account")
        ->type_name("NAME");
    command.add_flag("--finish", arguments_.finishes, "Finish what is restored");
  }

  void addTransactions() {
    auto& command =
        add("transactions", "Show the transactions that are not finished",
            [this](auto&) { return showTransactions(arguments_.global, arguments_.all); });
    command.add_flag("--all", arguments_.all, "The finished ones too");
  }

  void addFinish() {
    auto& command = add("finish", "Take a transaction out of the queue", [this](auto&) {
      return finish(arguments_.global, arguments_.transaction, arguments_.all);
    });
    auto* which = command.add_option_group("which")->require_option(1);
    which->add_option("TRANSACTION", arguments_.transaction,
                      "Its number in the ledger, or its identifier");
    which->add_flag("--all", arguments_.all, "Every one that can be finished");
  }

  CLI::App& app_;
  Arguments& arguments_;
  std::vector<std::pair<const CLI::App*, Run>> commands_;
};

void addGlobal(CLI::App& app, GlobalOptions& options) {
  app.add_option("--config", options.config, "The .storekit configuration that the store opens")
      ->envname("TQSTORE_CONFIG")
      ->type_name("FILE");
  app.add_option("--locale", options.locale,
                 "Language and region of products and prices, instead of the configuration's")
      ->type_name("LOCALE");
  app.add_option("--ledger", options.ledger,
                 "Where the transactions are kept, or :memory:; without it each configuration has "
                 "a file of its own in your state folder")
      ->envname("TQSTORE_LEDGER")
      ->type_name("FILE");
  app.add_flag("--json", options.json, "One JSON object a line on standard output, nothing else");
  app.set_version_flag("--version", "tqstore " TQSTORE_VERSION);
  app.require_subcommand(1);
  app.fallthrough();
  app.footer(
      "Exit status: 0 done, 1 the store said no, 2 wrong usage or input that cannot be read.\n"
      "Example: tqstore --config shop.storekit buy gems.100 --quantity 3");
}

std::unique_ptr<StoreKit::StoreSession> openStore(const GlobalOptions& options) {
  if (options.config.empty()) {
    complain("no configuration: name one with --config FILE or TQSTORE_CONFIG");
    return nullptr;
  }
  auto opening = StoreKit::StoreSession::open(options.config, {.ledger = options.ledger});
  for (const auto& problem : opening.problems) {
    const bool warning = problem.severity == StoreKit::ConfigurationProblem::Severity::warning;
    complain((warning ? "warning: " : "") + printable(problem.description()));
  }
  if (!opening.ledgerError.empty()) complain(printable(opening.ledgerError));
  return std::move(opening.session);
}

int run(int argc, char** argv) {
  CLI::App app("The embedded in-app store on the command line", "tqstore");
  Arguments arguments;
  addGlobal(app, arguments.global);
  const Commands commands(app, arguments);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kDone : kUsage;
  }
  if (arguments.global.json) {
    Foundation::setPrintHandler([](std::string_view message) { Foundation::warn(message); });
  }
  const auto session = openStore(arguments.global);
  if (!session) return kUsage;
  if (!arguments.global.locale.empty()) session->setLocale(arguments.global.locale);
  return commands.run(*session);
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
