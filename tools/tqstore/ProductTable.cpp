#include "tools/tqstore/ProductTable.hpp"

#include <string>

#include "TQStoreKitLib/products/ProductPricing.hpp"
#include "tools/tqstore/Console.hpp"
#include "tools/tqstore/Table.hpp"

namespace tqstore {

namespace {

constexpr int kWidthWithoutTerminal = 100;

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

}  // namespace

void writeProducts(const std::vector<StoreKit::CatalogueEntry>& entries) {
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

}  // namespace tqstore
