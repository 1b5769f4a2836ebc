#include "tools/tqstore/ControlCommands.hpp"

#include <functional>
#include <memory>
#include <string>

#include "tools/tqstore/StoreOpening.hpp"
#include "tools/tqstore/TransactionTable.hpp"
#include "tools/tqstore/TransactionText.hpp"

namespace tqstore {

namespace {

using StoreKit::LedgerEntries;
using StoreKit::LedgerEntry;
using StoreKit::StoreSession;
using Operation = StoreSession::Failure (StoreSession::*)(std::int64_t);

struct Control {
  const char* name;
  Operation operation;
  /// What is shown, of the entries that have changed: those that this says yes to. `named` is the
  /// transaction that the user named.
  bool (*isShown)(const LedgerEntry& changed, const LedgerEntry& named);
};

bool isNamed(const LedgerEntry& changed, const LedgerEntry& named) {
  return changed.identifier == named.identifier;
}

bool isSameSubscription(const LedgerEntry& one, const LedgerEntry& other) {
  return one.period && other.period && one.period->group == other.period->group;
}

// What resolving brings: the purchase again, or the next period, perhaps of another product.
bool isPaid(const LedgerEntry& changed, const LedgerEntry& named) {
  const bool newer = changed.identifier > named.identifier;
  const bool same = changed.payment.productIdentifier == named.payment.productIdentifier;
  return newer && changed.state == StoreKit::SKPaymentTransactionState::purchased &&
         (same || isSameSubscription(changed, named));
}

ExitStatus run(StoreSession& session, const Control& control, const std::string& identifier,
               const GlobalOptions& options) {
  const auto named = findEntry(ledger(), identifier);
  if (!named) {
    complain("there is no transaction " + printable(identifier));
    return kRefused;
  }
  const auto before = ledger().revision();
  if (const auto error = (session.*control.operation)(named->identifier)) {
    complain(printable(error->localizedDescription()));
    return kRefused;
  }
  LedgerEntries shown;
  for (auto& entry : ledger().changedAfter(before)) {
    if (!entry.deleted && control.isShown(entry, *named)) shown.push_back(std::move(entry));
  }
  writeEntries(shown, ledger(), options);
  return kDone;
}

void addControl(CommandLine& line, Control control, Manual manual) {
  const auto identifier = std::make_shared<std::string>();
  manual.group = "Away from the application";
  auto command =
      line.add(control.name, std::move(manual), [=, &options = line.options()](auto& session) {
        return run(session, control, *identifier, options);
      });
  command.addOption("TRANSACTION", *identifier, "Its number in the ledger, or its identifier")
      .required();
}

void addApprovals(CommandLine& line) {
  addControl(line, {"approve", &StoreSession::approveAskToBuyTransaction, isNamed},
             {.summary = "Approve a deferred purchase",
              .description =
                  "The purchase is paid: applications on the ledger are delivered it as purchased, "
                  "at once or when they start. That holds for one that was finished as well.",
              .refusal = "There is no such transaction, or it waits for no approval.",
              .examples = " tqstore --config shop.storekit approve 3\n"});
  addControl(line, {"decline", &StoreSession::declineAskToBuyTransaction, isNamed},
             {.summary = "Decline a deferred purchase",
              .description = "The purchase fails as cancelled (store error 2).",
              .refusal = "There is no such transaction, or it waits for no approval.",
              .examples = " tqstore --config shop.storekit decline 3\n"});
}

}  // namespace

void addControls(CommandLine& line) {
  addApprovals(line);
  addControl(line, {"refund", &StoreSession::refundTransaction, isNamed},
             {.summary = "Refund what was purchased",
              .description =
                  "The user gets the money back and loses what was bought, at once: it is not "
                  "restored any more, a subscription ends, and applications are told of the loss.",
              .refusal = "There is no such transaction, or it was not paid, or it was refunded "
                         "before.",
              .examples = " tqstore --config shop.storekit refund 2000000003\n"});
  addControl(line, {"resolve", &StoreSession::resolveIssueForTransaction, isPaid},
             {.summary = "Settle an interrupted purchase, or an unpaid renewal",
              .description =
                  "The user does what was missing, and pays. Applications are delivered a new "
                  "transaction, which is shown. Purchases are interrupted by the setting "
                  "interruptedPurchasesEnabled, renewals unpaid by billingRetryOnRenewalEnabled.",
              .refusal = "There is no such transaction, or nothing about it waits to be settled.",
              .examples = " tqstore --config shop.storekit resolve 3\n"});
}

}  // namespace tqstore
