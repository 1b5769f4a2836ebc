#include "tools/tqstore/FinishCommand.hpp"

#include <algorithm>
#include <memory>
#include <string>

#include "tools/tqstore/StoreOpening.hpp"
#include "tools/tqstore/TransactionTable.hpp"
#include "tools/tqstore/TransactionText.hpp"

namespace tqstore {

namespace {

using StoreKit::LedgerEntries;
using StoreKit::LedgerEntry;

bool isPurchasing(const LedgerEntry& entry) {
  return entry.state == StoreKit::SKPaymentTransactionState::purchasing;
}

// Finishes in the ledger itself, as an application on it would; others see it as a removal.
// What somebody else has changed meanwhile is not finished: it is not what was meant.
ExitStatus finishEntries(LedgerEntries entries, const GlobalOptions& options) {
  for (auto& entry : entries) entry.finished = true;
  if (const auto error = ledger().update(entries, StoreKit::Ledger::Durability::killedProcess)) {
    complain(error->localizedDescription());
    return kRefused;
  }
  StoreKit::EmbeddedStore::current().downloads().sweep();
  LedgerEntries finished;
  for (const auto& entry : entries) {
    if (entry.finished) {
      finished.push_back(entry);
    } else {
      complain("transaction " + std::to_string(entry.identifier) +
               " was changed by another program and is not finished");
    }
  }
  writeEntries(finished, ledger(), options);
  return finished.size() == entries.size() ? kDone : kRefused;
}

ExitStatus finishOne(const std::string& identifier, const GlobalOptions& options) {
  const auto entry = findEntry(ledger(), identifier);
  if (!entry) {
    complain("there is no transaction " + printable(identifier));
    return kRefused;
  }
  if (entry->finished) {
    writeEntries({*entry}, ledger(), options);
    return kDone;
  }
  if (isPurchasing(*entry)) {
    complain("transaction " + identifier + " is purchasing: it cannot be finished");
    return kRefused;
  }
  return finishEntries({*entry}, options);
}

ExitStatus finishAll(const GlobalOptions& options) {
  auto entries = ledger().unfinished();
  entries.erase(std::remove_if(entries.begin(), entries.end(), isPurchasing), entries.end());
  if (!entries.empty()) return finishEntries(std::move(entries), options);
  if (!options.json) complain("there is nothing to finish");
  return kDone;
}

Manual manual() {
  return {.group = "The ledger",
          .summary = "Take a transaction out of the queue",
          .description =
              "Finishes transactions as an application does once it has delivered them: they are "
              "not delivered again, and applications on the ledger see them removed. Finishing "
              "twice is harmless. A deferred transaction that is finished can still be approved, "
              "and is delivered then. One that is purchasing cannot be finished.",
          .refusal = "There is no such transaction, or it is purchasing.",
          .examples =
              " tqstore --config shop.storekit finish 3\n"
              " tqstore --config shop.storekit finish --all\n"};
}

struct Arguments {
  std::string transaction;
  bool all = false;
};

}  // namespace

void addFinish(CommandLine& line) {
  const auto given = std::make_shared<Arguments>();
  auto command = line.add("finish", manual(), [given, &options = line.options()](auto&) {
    return given->all ? finishAll(options) : finishOne(given->transaction, options);
  });
  auto which = command.addAlternatives();
  which.addOption("TRANSACTION", given->transaction, "Its number in the ledger, or its identifier");
  which.addFlag("--all", given->all, "Every one that can be finished");
}

}  // namespace tqstore
