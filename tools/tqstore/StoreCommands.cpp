#include "tools/tqstore/StoreCommands.hpp"

#include <memory>
#include <string>

#include "tools/tqstore/StoreOpening.hpp"
#include "tools/tqstore/TransactionTable.hpp"

namespace tqstore {

namespace {

using StoreKit::LedgerEntries;
using StoreKit::LedgerEntry;
using StoreKit::StoreSession;
using Operation = StoreSession::Failure (StoreSession::*)(const std::string&);

struct Control {
  const char* name;
  Operation operation;
  /// What is shown, of the entries that have changed: those that this says yes to.
  bool (*isShown)(const LedgerEntry& changed, const StoreKit::SKProduct& product);
};

bool isOfGroup(const LedgerEntry& entry, const StoreKit::SKProduct& product) {
  return entry.period && entry.period->group == product.subscriptionGroupIdentifier();
}

bool isRunning(const LedgerEntry& entry, const StoreKit::SKProduct& product) {
  return isOfGroup(entry, product) && entry.period && entry.period->running;
}

bool hasEnded(const LedgerEntry& entry, const StoreKit::SKProduct& product) {
  return isOfGroup(entry, product) && entry.period && !entry.period->running;
}

// Not only while the application is still to be asked: one that runs may be quick.
bool isOfProduct(const LedgerEntry& entry, const StoreKit::SKProduct& product) {
  return entry.payment.productIdentifier == product.productIdentifier();
}

ExitStatus run(StoreSession& session, const Control& control, const std::string& identifier,
               const GlobalOptions& options) {
  const auto before = ledger().revision();
  if (const auto error = (session.*control.operation)(identifier)) {
    complain(printable(error->localizedDescription()));
    return kRefused;
  }
  const auto& product = *session.catalogue().find(identifier)->product;
  LedgerEntries shown;
  for (auto& entry : ledger().changedAfter(before)) {
    if (!entry.deleted && control.isShown(entry, product)) shown.push_back(std::move(entry));
  }
  writeEntries(shown, ledger(), options);
  return kDone;
}

void addControl(CommandLine& line, Control control, const char* meaning, Manual manual) {
  const auto identifier = std::make_shared<std::string>();
  manual.group = "Away from the application";
  auto command =
      line.add(control.name, std::move(manual), [=, &options = line.options()](auto& session) {
        return run(session, control, *identifier, options);
      });
  command.addOption("PRODUCT", *identifier, meaning).required();
}

}  // namespace

void addStoreCommands(CommandLine& line) {
  addControl(line, {"storefront-buy", &StoreSession::beginStorePurchase, isOfProduct},
             "The product that the user wants to buy",
             {.summary = "Begin a purchase in the store itself",
              .description =
                  "The user taps on the product in the store, outside the application. The next "
                  "application on the ledger, or the one that runs, is asked whether to carry on. "
                  "launch is one: it accepts, and shows that. buy and restore are not asked.",
              .refusal = "Nothing is sold under that identifier.",
              .examples = " tqstore --config shop.storekit storefront-buy levels\n"});
  addControl(
      line, {"renew", &StoreSession::forceRenewalOfSubscription, isRunning},
      "A subscription that is running",
      {.summary = "Renew a subscription now",
       .description = "Ends the period and begins the next, and switches auto-renewal on. The new "
                      "period's transaction is shown, and delivered to applications. Without this, "
                      "periods go by at the setting timeRate.",
       .refusal = "The product is no subscription, or it is not running.",
       .examples = " tqstore --config shop.storekit renew club.monthly\n"});
  addControl(
      line, {"expire", &StoreSession::expireSubscription, hasEnded},
      "A subscription that is running",
      {.summary = "End a subscription now",
       .description = "Ends the period, and no other follows. Its last transaction is shown.",
       .refusal = "The product is no subscription, or it is not running.",
       .examples = " tqstore --config shop.storekit expire club.monthly\n"});
}

}  // namespace tqstore
