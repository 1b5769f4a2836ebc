#include "tools/tqstore/LedgerCommands.hpp"

#include <optional>

#include "TQStoreKitLib/TQStoreKitLib.hpp"
#include "TQStoreKitLib/transactions/TransactionDescriptions.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "platform/embedded/store/LedgerTransaction.hpp"
#include "tools/tqstore/Table.hpp"
#include "tools/tqstore/TransactionText.hpp"

namespace tqstore {

namespace {

using namespace TQStoreKitLib;
using StoreKit::LedgerEntry;
using State = StoreKit::SKPaymentTransactionState;

constexpr int kWidthWithoutTerminal = 100;

StoreKit::Ledger& ledger() { return StoreKit::EmbeddedStore::current().ledger(); }

void runUntilQuiet() {
  while (Dispatch::MainLoop::drain() > 0) {
    // Each round may have queued another.
  }
}

void writeEntries(const std::vector<LedgerEntry>& entries, bool json) {
  if (json) {
    for (const auto& entry : entries) writeJson(toJson(entry, ledger()));
    return;
  }
  Table table({{.title = "#", .align = Table::Align::right, .whole = true},
               {.title = "Product", .whole = true},
               {.title = "Quantity", .align = Table::Align::right},
               {.title = "State", .whole = true},
               {.title = "Transaction", .whole = true},
               {.title = "Date"},
               {.title = "User"}});
  for (const auto& entry : entries) {
    table.add({std::to_string(entry.identifier), printable(entry.payment.productIdentifier),
               std::to_string(entry.payment.quantity),
               StoreKit::debugDescription(entry.state) + (entry.finished ? ", finished" : ""),
               entry.transactionIdentifier.value_or(""),
               entry.transactionDate ? isoDate(*entry.transactionDate) : "",
               printable(entry.payment.applicationUsername.value_or(""))});
  }
  table.write(terminalWidth(kWidthWithoutTerminal));
}

// The entry behind a transaction of the library.
std::optional<LedgerEntry> entryOf(const TQPaymentTransaction& transaction) {
  const auto platform = platformTransaction(transaction);
  const auto* known = dynamic_cast<const StoreKit::LedgerTransaction*>(platform.get());
  return known ? std::optional<LedgerEntry>(known->entry()) : std::nullopt;
}

void showPurchases(const std::vector<TQPurchase>& purchases, bool json) {
  for (const auto& purchase : purchases) {
    if (const auto entry = entryOf(*purchase.transaction)) {
      if (json) {
        writeJson(toJson(*entry, ledger()));
      } else {
        writeLine(styled("delivered  ", Style::dim) + StoreKit::debugDescription(entry->state) +
                  "  " + std::to_string(purchase.quantity) + " x " + printable(purchase.productId) +
                  ", transaction " + entry->transactionIdentifier.value_or("without identifier") +
                  (purchase.needsFinishTransaction ? ", still to be finished" : ", finished"));
      }
    }
  }
}

bool canBeFinished(const LedgerEntry& entry) {
  return !entry.finished && entry.state != State::purchasing && entry.state != State::deferred;
}

// Finishes in the ledger itself, as an application on it would; others see it as a removal.
std::size_t finishEntries(std::vector<LedgerEntry> entries) {
  for (auto& entry : entries) entry.finished = true;
  if (const auto error = ledger().update(entries, StoreKit::Ledger::Durability::killedProcess)) {
    complain(error->localizedDescription());
    return 0;
  }
  return entries.size();
}

ExitStatus refuseToFinish(const std::string& identifier, const std::optional<LedgerEntry>& entry) {
  complain(entry ? "transaction " + identifier + " is " + StoreKit::debugDescription(entry->state) +
                       ": it cannot be finished"
                 : "there is no transaction " + identifier);
  return kRefused;
}

}  // namespace

ExitStatus showTransactions(const GlobalOptions& options, bool all) {
  const auto entries = all ? ledger().all() : ledger().unfinished();
  if (options.json || !entries.empty()) {
    writeEntries(entries, options.json);
  } else {
    complain(all ? "the ledger is empty" : "nothing is unfinished");
  }
  return kDone;
}

ExitStatus finish(const GlobalOptions& options, const std::string& identifier, bool all) {
  std::vector<LedgerEntry> wanted;
  if (all) {
    for (const auto& entry : ledger().unfinished()) {
      if (canBeFinished(entry)) wanted.push_back(entry);
    }
  } else {
    const auto entry = findEntry(ledger(), identifier);
    if (!entry || (!entry->finished && !canBeFinished(*entry))) {
      return refuseToFinish(identifier, entry);
    }
    wanted.push_back(*entry);
  }
  if (finishEntries(wanted) != wanted.size()) return kRefused;
  for (auto& entry : wanted) entry = ledger().find(entry.identifier).value_or(entry);
  if (options.json || !wanted.empty()) writeEntries(wanted, options.json);
  return kDone;
}

ExitStatus launch(const GlobalOptions& options, bool finishes, bool watch) {
  TQStoreKit::completeTransactions({.atomically = false},
                                   [&](const std::vector<TQPurchase>& purchases) {
                                     showPurchases(purchases, options.json);
                                     if (!finishes) return;
                                     for (const auto& purchase : purchases) {
                                       if (purchase.needsFinishTransaction)
                                         TQStoreKit::finishTransaction(*purchase.transaction);
                                     }
                                   });
  if (watch) Dispatch::MainLoop::run();
  runUntilQuiet();
  return kDone;
}

ExitStatus restore(const GlobalOptions& options, const std::string& user, bool finishes) {
  auto status = kRefused;
  bool ended = false;
  TQStoreKit::restorePurchases(
      {.atomically = finishes, .applicationUsername = user}, [&](const TQRestoreResults& results) {
        showPurchases(results.restoredPurchases, options.json);
        for (const auto& [error, product] : results.restoreFailedPurchases) {
          complain(error.localizedDescription());
        }
        status = results.restoreFailedPurchases.empty() ? kDone : kRefused;
        const auto count = results.restoredPurchases.size();
        if (options.json) {
          writeJson({{"result", status == kDone ? "success" : "error"}, {"restored", count}});
        } else {
          writeLine(styled("result     ", Style::dim) + std::to_string(count) + " restored");
        }
        ended = true;
        Dispatch::MainLoop::stop();
      });
  while (!ended) Dispatch::MainLoop::run();
  runUntilQuiet();
  return status;
}

}  // namespace tqstore
