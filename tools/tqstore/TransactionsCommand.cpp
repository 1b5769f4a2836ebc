#include "tools/tqstore/TransactionsCommand.hpp"

#include <memory>

#include "tools/tqstore/StoreOpening.hpp"
#include "tools/tqstore/TransactionTable.hpp"

namespace tqstore {

namespace {

ExitStatus showTransactions(const GlobalOptions& options, bool all) {
  const auto entries = all ? ledger().all() : ledger().unfinished();
  writeEntries(entries, ledger(), options);
  if (!options.json && entries.empty()) {
    complain(all ? "the ledger is empty" : "nothing is unfinished");
  }
  return kDone;
}

Manual manual() {
  return {.group = "The ledger",
          .summary = "Show the transactions that are not finished",
          .description =
              "Shows what the ledger holds, in the order in which it was added. Subscriptions are "
              "renewed before, where that is due; nothing is delivered or carried on. Beside the "
              "period "
              "that keeps a subscription running stands until when, and whether it renews then.\n"
              "\n"
              "With --json a transaction is, here and in every other command: identifier (its "
              "number in the ledger), transactionIdentifier (the platform's; null where it has "
              "none), productIdentifier, quantity, state (purchasing, purchased, failed, restored "
              "or deferred), date (ISO 8601 in UTC, or null), originalTransactionIdentifier, "
              "applicationUsername, error (null, or domain, code and message) and finished.",
          .examples =
              " tqstore --config shop.storekit transactions\n"
              " tqstore --config shop.storekit --json transactions --all | jq -r .state\n"};
}

}  // namespace

void addTransactions(CommandLine& line) {
  const auto all = std::make_shared<bool>(false);
  auto command = line.add("transactions", manual(), [all, &options = line.options()](auto&) {
    return showTransactions(options, *all);
  });
  command.addFlag("--all", *all, "The finished ones too");
}

}  // namespace tqstore
