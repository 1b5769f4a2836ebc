#include "tools/tqstore/ProductsCommand.hpp"

#include <optional>
#include <set>

#include "TQStoreKitLib/TQStoreKitLib.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "tools/tqstore/Json.hpp"
#include "tools/tqstore/Table.hpp"

namespace tqstore {

namespace {

using StoreKit::CatalogueEntry;
using TQStoreKitLib::TQProductIdentifiers;
using TQStoreKitLib::TQProductsResponse;

constexpr int kWidthWithoutTerminal = 100;

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

std::string offerText(const StoreKit::SKProduct& product) {
  const auto& offer = product.introductoryPrice();
  if (!offer) return "";
  auto text = localizedPrice(*offer).value_or("") + " for " + localizedSubscriptionPeriod(*offer);
  if (offer->numberOfPeriods > 1) text += " x " + std::to_string(offer->numberOfPeriods);
  return text;
}

std::string periodText(const StoreKit::SKProduct& product) {
  const auto& period = product.subscriptionPeriod();
  return period ? localizedSubscriptionPeriod(*period) : "";
}

void writeTable(const std::vector<CatalogueEntry>& entries) {
  Table table({{.title = "Product", .whole = true},
               {.title = "Title"},
               {.title = "Price", .align = Table::Align::right, .whole = true},
               {.title = "Every", .whole = true},
               {.title = "At first"},
               {.title = "Type"},
               {.title = "Description"}});
  for (const auto& entry : entries) {
    const auto& product = *entry.product;
    table.add({printable(product.productIdentifier()), printable(product.localizedTitle()),
               regularPrice(product).value_or("no price"), periodText(product), offerText(product),
               std::string(toString(entry.type)), printable(product.localizedDescription())});
  }
  table.write(terminalWidth(kWidthWithoutTerminal));
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

}  // namespace

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
    writeTable(entries);
  } else if (identifiers.empty()) {
    complain("the configuration has no products");
  }
  writeUnknown(response.invalidIDs(), options.json);
  return response.invalidIDs().empty() ? kDone : kRefused;
}

}  // namespace tqstore
