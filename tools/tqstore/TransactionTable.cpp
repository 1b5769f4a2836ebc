#include "tools/tqstore/TransactionTable.hpp"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tools/tqstore/Table.hpp"
#include "tools/tqstore/TransactionText.hpp"

namespace tqstore {

namespace {

constexpr int kWidthWithoutTerminal = 160;

std::vector<Table::Column> columns(bool withPeriods) {
  std::vector<Table::Column> columns = {{.title = "#", .align = Table::Align::right, .whole = true},
                                        {.title = "Product", .whole = true},
                                        {.title = "Quantity", .align = Table::Align::right},
                                        {.title = "State", .whole = true},
                                        {.title = "Transaction", .whole = true},
                                        {.title = "Date"},
                                        {.title = "User"}};
  if (withPeriods) columns.push_back({.title = "Subscription"});
  return columns;
}

std::vector<std::string> row(const StoreKit::LedgerEntry& entry) {
  return {std::to_string(entry.identifier),
          printable(entry.payment.productIdentifier),
          std::to_string(entry.payment.quantity),
          stateText(entry),
          entry.transactionIdentifier.value_or(""),
          entry.transactionDate ? isoDate(*entry.transactionDate) : "",
          printable(entry.payment.applicationUsername.value_or(""))};
}

void writeTable(const StoreKit::LedgerEntries& entries) {
  const bool withPeriods = std::any_of(
      entries.begin(), entries.end(), [](const auto& entry) { return !periodText(entry).empty(); });
  Table table(columns(withPeriods));
  for (const auto& entry : entries) {
    auto texts = row(entry);
    if (withPeriods) texts.push_back(periodText(entry));
    table.add(std::move(texts));
  }
  table.write(terminalWidth(kWidthWithoutTerminal));
}

}  // namespace

void writeEntries(const StoreKit::LedgerEntries& entries, const StoreKit::Ledger& ledger,
                  const GlobalOptions& options) {
  if (options.json) {
    for (const auto& entry : entries) writeJson(toJson(entry, ledger));
  } else if (!entries.empty()) {
    writeTable(entries);
  }
}

}  // namespace tqstore
