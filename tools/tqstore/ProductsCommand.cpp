#include "tools/tqstore/ProductsCommand.hpp"

#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "TQStoreKitLib/TQStoreKitLib.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "tools/tqstore/Json.hpp"
#include "tools/tqstore/ProductTable.hpp"

namespace tqstore {

namespace {

using StoreKit::CatalogueEntry;
using TQStoreKitLib::TQProductIdentifiers;
using TQStoreKitLib::TQProductsResponse;

TQProductsResponse fetch(const TQProductIdentifiers& identifiers) {
  std::optional<TQProductsResponse> answer;
  TQStoreKitLib::TQStoreKit::fetchProductsInfo(identifiers, [&](const auto& response) {
    answer = response;
    Dispatch::MainLoop::stop();
  });
  while (!answer) Dispatch::MainLoop::run();
  return *answer;
}

// The answer is a set; the catalogue knows the order, the types and the language.
std::vector<CatalogueEntry> inOrder(const StoreKit::Catalogue& catalogue,
                                    const TQProductsResponse& response) {
  std::set<std::string> sold;
  for (const auto& product : response.valids()) sold.insert(product->productIdentifier());
  std::vector<CatalogueEntry> entries;
  for (const auto& entry : catalogue.entries()) {
    if (sold.contains(entry.product->productIdentifier())) entries.push_back(entry);
  }
  return entries;
}

// In the user's language and with the prices of the storefront; --locale takes the place of every
// other, also of one that was set. It is not set here: a setting holds for every program.
StoreKit::Catalogue shownCatalogue(const StoreKit::StoreSession& session,
                                   const GlobalOptions& options) {
  if (options.locale.empty()) return session.catalogue();
  const auto reading = StoreKit::readConfiguration(options.config);
  if (!reading.configuration) return session.catalogue();
  const auto& settings = session.settings();
  return {*reading.configuration, options.locale, settings.storefront, 0, settings.hostedContent};
}

void writeUnknown(const std::set<std::string>& identifiers, bool json) {
  for (const auto& identifier : identifiers) {
    if (json) {
      writeJson({{"invalidProductIdentifier", identifier}});
    } else {
      complain("the store does not know the product \"" + printable(identifier) + "\"");
    }
  }
}

ExitStatus showProducts(const StoreKit::StoreSession& session, const GlobalOptions& options,
                        const std::vector<std::string>& identifiers) {
  StoreKit::StoreSession::setIsForApplication(false);
  TQProductIdentifiers wanted(identifiers.begin(), identifiers.end());
  if (identifiers.empty()) {
    for (const auto& entry : session.catalogue().entries()) {
      wanted.insert(entry.product->productIdentifier());
    }
  }
  const auto response = fetch(wanted);
  const auto entries = inOrder(shownCatalogue(session, options), response);
  if (options.json) {
    for (const auto& entry : entries) writeJson(toJson(entry));
  } else if (!entries.empty()) {
    writeProducts(entries);
  } else if (identifiers.empty()) {
    complain("the configuration has no products");
  }
  writeUnknown(response.invalidIDs(), options.json);
  return response.invalidIDs().empty() ? kDone : kRefused;
}

Manual manual() {
  return {.group = "The shop",
          .summary = "Show what the store sells",
          .description =
              "Asks the store for products, as an application does, and shows them in the order of "
              "the configuration: with the prices of the storefront, in the user's language.",
          .refusal = "The store does not know one of the products; the others are shown.",
          .examples =
              " tqstore --config shop.storekit products\n"
              " tqstore --config shop.storekit --locale de_DE products gems.100\n"
              " tqstore --config shop.storekit --json products | jq -r .priceText\n"};
}

}  // namespace

void addProducts(CommandLine& line) {
  const auto identifiers = std::make_shared<std::vector<std::string>>();
  auto command =
      line.add("products", manual(), [identifiers, &options = line.options()](auto& session) {
        return showProducts(session, options, *identifiers);
      });
  command.addOption("PRODUCT", *identifiers, "Only these products");
}

}  // namespace tqstore
