#include "tools/tqstore/TransactionTable.hpp"

#include "tools/tqstore/Table.hpp"
#include "tools/tqstore/TransactionText.hpp"

namespace tqstore {

namespace {

constexpr int kWidthWithoutTerminal = 100;

void writeTable(const StoreKit::LedgerEntries& entries) {
  Table table({{.title = "#", .align = Table::Align::right, .whole = true},
               {.title = "Product", .whole = true},
               {.title = "Quantity", .align = Table::Align::right},
               {.title = "State", .whole = true},
               {.title = "Transaction", .whole = true},
               {.title = "Date"},
               {.title = "User"}});
  for (const auto& entry : entries) {
    table.add({std::to_string(entry.identifier), printable(entry.payment.productIdentifier),
               std::to_string(entry.payment.quantity), stateText(entry),
               entry.transactionIdentifier.value_or(""),
               entry.transactionDate ? isoDate(*entry.transactionDate) : "",
               printable(entry.payment.applicationUsername.value_or(""))});
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
