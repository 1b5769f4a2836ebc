#include "tools/tqstore/ProductsCommand.hpp"

#include <memory>
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

// The answer is a set; the configuration knows the order and the types.
std::vector<CatalogueEntry> inOrder(const StoreKit::Catalogue& catalogue,
                                    const TQProductsResponse& response) {
  std::vector<CatalogueEntry> entries;
  for (const auto& entry : catalogue.entries()) {
    const auto found = response.valids().find(entry.product);
    if (found != response.valids().end()) entries.push_back({entry.type, *found});
  }
  return entries;
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
  TQProductIdentifiers wanted(identifiers.begin(), identifiers.end());
  if (identifiers.empty()) {
    for (const auto& entry : session.catalogue().entries()) {
      wanted.insert(entry.product->productIdentifier());
    }
  }
  const auto response = fetch(wanted);
  const auto entries = inOrder(session.catalogue(), response);
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
  auto& command =
      line.add("products", manual(), [identifiers, &options = line.options()](auto& session) {
        return showProducts(session, options, *identifiers);
      });
  command.add_option("PRODUCT", *identifiers, "Only these products");
}

}  // namespace tqstore
