#include "tools/tqstore/RestoreCommand.hpp"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <set>
#include <string>

#include "TQStoreKitLib/TQStoreKitLib.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "tools/tqstore/Deliveries.hpp"
#include "tools/tqstore/StoreOpening.hpp"
#include "tools/tqstore/StorePurchases.hpp"
#include "tools/tqstore/TransactionText.hpp"

namespace tqstore {

namespace {

using namespace TQStoreKitLib;

struct RestoreOptions {
  std::string user;
  bool finishes = false;
};

std::set<std::int64_t> unfinishedIdentifiers() {
  std::set<std::int64_t> identifiers;
  for (const auto& entry : ledger().unfinished()) identifiers.insert(entry.identifier);
  return identifiers;
}

// The library gathers everything restored that it sees meanwhile, also what an earlier restore left
// unfinished, and what another program restores.
std::vector<TQPurchase> broughtByThis(std::vector<TQPurchase> restored, const std::string& user,
                                      const std::set<std::int64_t>& before) {
  const auto isOther = [&](const TQPurchase& purchase) {
    const auto entry = entryOf(*purchase.transaction);
    if (!entry || before.contains(entry->identifier)) return true;
    return !user.empty() && entry->payment.applicationUsername.value_or("") != user;
  };
  restored.erase(std::remove_if(restored.begin(), restored.end(), isOther), restored.end());
  return restored;
}

ExitStatus showResult(const TQRestoreResults& results, std::size_t count, bool json) {
  for (const auto& [error, product] : results.restoreFailedPurchases) {
    complain(printable(error.localizedDescription()));
  }
  const bool done = results.restoreFailedPurchases.empty();
  if (json) {
    writeJson({{"result", done ? "success" : "error"}, {"restored", count}});
  } else {
    writeLine(styled("result     ", Style::dim) + std::to_string(count) + " restored");
  }
  return done ? kDone : kRefused;
}

ExitStatus restore(const GlobalOptions& options, const RestoreOptions& wanted) {
  acceptStorePurchases();
  const auto before = unfinishedIdentifiers();
  std::optional<ExitStatus> status;
  TQStoreKit::restorePurchases(
      {.atomically = false, .applicationUsername = wanted.user},
      [&](const TQRestoreResults& results) {
        const auto brought = broughtByThis(results.restoredPurchases, wanted.user, before);
        handleDeliveries(brought, {.json = options.json, .finishes = wanted.finishes});
        status = showResult(results, brought.size(), options.json);
        Dispatch::MainLoop::stop();
      });
  while (!status) Dispatch::MainLoop::run();
  runQueued();
  return *status;
}

Manual manual() {
  return {.group = "Buying",
          .summary = "Bring back what was bought and can be had again",
          .description =
              "Restores through the library, and shows each transaction that this brings, then "
              "how many there were. What an earlier restore left unfinished is not shown again; "
              "launch delivers it.",
          .refusal = "The restore ended early; what it brought before is shown.",
          .examples =
              " tqstore --config shop.storekit restore\n"
              " tqstore --config shop.storekit restore --user ann --finish\n"};
}

}  // namespace

void addRestore(CommandLine& line) {
  const auto wanted = std::make_shared<RestoreOptions>();
  auto& command = line.add("restore", manual(), [wanted, &options = line.options()](auto&) {
    return restore(options, *wanted);
  });
  command.add_option("--user", wanted->user, "Only what was bought for this account")
      ->type_name("NAME");
  command.add_flag("--finish", wanted->finishes, "Finish what is restored");
}

}  // namespace tqstore
