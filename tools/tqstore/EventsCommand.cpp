#include "tools/tqstore/EventsCommand.hpp"

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "platform/Dispatch/MainQueue.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "tools/tqstore/Interruption.hpp"
#include "tools/tqstore/StoreOpening.hpp"
#include "tools/tqstore/TransactionText.hpp"

namespace tqstore {

namespace {

using StoreKit::LedgerEntry;

std::string entryText(const LedgerEntry& entry) {
  auto text = "#" + std::to_string(entry.identifier) + "  " +
              std::to_string(entry.payment.quantity) + " x " +
              printable(entry.payment.productIdentifier) + "  " +
              (entry.deleted ? "deleted" : stateText(entry));
  if (entry.transactionIdentifier) text += "  " + *entry.transactionIdentifier;
  return text;
}

// Shows each entry that has changed since the last look, unless what can be seen of it is the same.
// Main thread.
class EventStream {
 public:
  /// Shows what changes after `revision`.
  EventStream(StoreKit::Ledger& ledger, std::int64_t revision, bool json)
      : ledger_(ledger), json_(json), revision_(revision) {}

  void showUnfinished() {
    for (const auto& entry : ledger_.unfinished()) show(entry, entry.cancelDate.has_value());
  }

  void look() {
    const auto known = revision_;
    for (const auto& entry : ledger_.changedAfter(known)) {
      revision_ = entry.revision;
      show(entry, entry.refundRevision.value_or(0) > known);
    }
    if (outputIsLost()) Dispatch::MainLoop::stop();
  }

 private:
  void show(const LedgerEntry& entry, bool refunded) {
    const auto number = std::to_string(entry.identifier);
    if (json_ && refunded && !entry.deleted) {
      writeJson({{"event", "refunded"}, {"identifier", number}});
    }
    auto text = json_ ? jsonText(entry, number) : entryText(entry);
    auto& shown = shown_[entry.identifier];
    if (shown == text) return;
    shown = std::move(text);
    writeLine(json_ ? shown : styled(isoDate(Foundation::Date::now()), Style::dim) + "  " + shown);
  }

  [[nodiscard]] std::string jsonText(const LedgerEntry& entry, const std::string& number) const {
    return asLine(entry.deleted ? Json({{"event", "deleted"}, {"identifier", number}})
                                : toJson(entry, ledger_));
  }

  StoreKit::Ledger& ledger_;
  bool json_;
  std::int64_t revision_;
  std::map<std::int64_t, std::string> shown_;  // of each transaction, what was shown last
};

// False when it is told to end before.
bool waitForLedger(const std::string& path, const Interruption& interruption) {
  complain(printable(path) +
           ": there is no ledger yet; waiting for a program that opens the store");
  while (!hasLedger(path)) {
    Dispatch::MainLoop::runFor(std::chrono::milliseconds(25));
    if (interruption.hasCome()) return false;
  }
  return true;
}

ExitStatus follow(const GlobalOptions& options, bool unfinishedFirst) {
  const auto path = ledgerFile(options);
  if (!path) return kUsage;
  const Interruption interruption;
  const bool isThere = hasLedger(*path);
  if (!isThere && !waitForLedger(*path, interruption)) return kDone;
  const auto ledger = openLedger(*path);
  if (!ledger) return kUsage;
  EventStream stream(*ledger, isThere ? ledger->revision() : 0, options.json);
  if (unfinishedFirst) stream.showUnfinished();
  if (!options.json) complain("watching the ledger; Ctrl-C ends this");
  if (!isThere) stream.look();
  ledger->watch([&stream] { Dispatch::mainQueue().async([&stream] { stream.look(); }); });
  Dispatch::MainLoop::run();
  return kDone;
}

Manual manual() {
  return {
      .group = "The ledger",
      .summary = "Show what happens in the ledger, live",
      .description =
          "Shows each transaction that is added or changed, by whichever program on the "
          "ledger, within a tenth of a second, until it is interrupted. Changes of one "
          "transaction that follow each other faster are shown as one, the last; a change of which "
          "nothing can be seen is not shown.\n"
          "\n"
          "It only reads: nothing is delivered, finished or carried on. Where no ledger is yet, "
          "it waits for the program that makes it. The ledger must be one that can be written "
          "to, as every program that has it open keeps a lock in it.\n"
          "\n"
          "With --json a line is the transaction as it is now; {\"event\": \"refunded\", "
          "\"identifier\": ...} when it was refunded, which its members do not tell; or "
          "{\"event\": \"deleted\", \"identifier\": ...} when it was removed from the ledger.",
      .refusal = "Standard output cannot be written to.",
      .examples =
          " tqstore --config shop.storekit events\n"
          " tqstore --ledger shop.ledger --json events --unfinished\n"};
}

}  // namespace

void addEvents(CommandLine& line) {
  const auto unfinishedFirst = std::make_shared<bool>(false);
  auto command = line.addOnLedger("events", manual(), [unfinishedFirst, &options = line.options()] {
    return follow(options, *unfinishedFirst);
  });
  command.addFlag("--unfinished", *unfinishedFirst,
                  "Begin with the transactions that are not finished");
}

}  // namespace tqstore
