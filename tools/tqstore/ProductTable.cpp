#include "tools/tqstore/ProductTable.hpp"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <string>

#include "TQStoreKitLib/products/ProductPricing.hpp"
#include "tools/tqstore/Console.hpp"
#include "tools/tqstore/ProgressText.hpp"
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

// "1.5 kB, version 1.0".
std::string contentText(const StoreKit::SKProduct& product) {
  if (!product.isDownloadable()) return "";
  const auto& lengths = product.downloadContentLengths();
  const auto size = std::accumulate(lengths.begin(), lengths.end(), std::int64_t{0});
  return byteText(size) + ", version " + printable(product.downloadContentVersion());
}

std::vector<Table::Column> columns(bool withContent) {
  std::vector<Table::Column> columns = {
      {.title = "Product", .whole = true},
      {.title = "Title"},
      {.title = "Price", .align = Table::Align::right, .whole = true},
      {.title = "Every", .whole = true},
      {.title = "At first"},
      {.title = "Type"},
      {.title = "Description"}};
  if (withContent) columns.push_back({.title = "Content", .whole = true});
  return columns;
}

std::vector<std::string> row(const StoreKit::CatalogueEntry& entry) {
  const auto& product = *entry.product;
  return {printable(product.productIdentifier()),
          printable(product.localizedTitle()),
          regularPrice(product).value_or("no price"),
          periodText(product),
          offerText(product),
          std::string(toString(entry.type)),
          printable(product.localizedDescription())};
}

}  // namespace

void writeProducts(const std::vector<StoreKit::CatalogueEntry>& entries) {
  const bool withContent = std::any_of(entries.begin(), entries.end(), [](const auto& entry) {
    return entry.product->isDownloadable();
  });
  Table table(columns(withContent));
  for (const auto& entry : entries) {
    auto texts = row(entry);
    if (withContent) texts.push_back(contentText(*entry.product));
    table.add(std::move(texts));
  }
  table.write(terminalWidth(kWidthWithoutTerminal));
}

}  // namespace tqstore
