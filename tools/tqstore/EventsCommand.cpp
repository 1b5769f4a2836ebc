#include "tools/tqstore/EventsCommand.hpp"

#include <memory>

#include "platform/Dispatch/MainQueue.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "tools/tqstore/Interruption.hpp"
#include "tools/tqstore/TransactionText.hpp"

namespace tqstore {

namespace {

using StoreKit::LedgerEntry;

std::string entryText(const LedgerEntry& entry) {
  auto text = styled(isoDate(Foundation::Date::now()), Style::dim) + "  #" +
              std::to_string(entry.identifier) + "  " + std::to_string(entry.payment.quantity) +
              " x " + printable(entry.payment.productIdentifier) + "  " +
              (entry.deleted ? "deleted" : stateText(entry));
  if (entry.transactionIdentifier) text += "  " + *entry.transactionIdentifier;
  return text;
}

// Shows each entry that has changed since the last look. Main thread.
class EventStream {
 public:
  EventStream(StoreKit::Ledger& ledger, bool json)
      : ledger_(ledger), json_(json), revision_(ledger.revision()) {}

  void showUnfinished() const {
    for (const auto& entry : ledger_.unfinished()) show(entry);
  }

  void look() {
    for (const auto& entry : ledger_.changedAfter(revision_)) {
      revision_ = entry.revision;
      show(entry);
    }
  }

 private:
  void show(const LedgerEntry& entry) const {
    if (!json_) {
      writeLine(entryText(entry));
    } else if (entry.deleted) {
      writeJson({{"event", "deleted"}, {"identifier", std::to_string(entry.identifier)}});
    } else {
      writeJson(toJson(entry, ledger_));
    }
  }

  StoreKit::Ledger& ledger_;
  bool json_;
  std::int64_t revision_;
};

ExitStatus follow(StoreKit::Ledger& ledger, const GlobalOptions& options, bool unfinishedFirst) {
  if (options.ledger == ":memory:") {
    complain("a ledger in memory is this program's own: nothing will ever happen in it");
    return kUsage;
  }
  EventStream stream(ledger, options.json);
  const Interruption interruption;
  if (unfinishedFirst) stream.showUnfinished();
  if (!options.json) complain("watching the ledger; Ctrl-C ends this");
  ledger.watch([&stream] { Dispatch::mainQueue().async([&stream] { stream.look(); }); });
  Dispatch::MainLoop::run();
  return kDone;
}

Manual manual() {
  return {.group = "The ledger",
          .summary = "Show what happens in the ledger, live",
          .description =
              "Shows each transaction that is added or changed, by whichever program on the "
              "ledger, within a tenth of a second, until it is interrupted. Changes of one "
              "transaction that follow each other faster are shown as one, the last.\n"
              "\n"
              "It only reads: nothing is delivered, finished or carried on. With --json a line is "
              "the transaction as it is now, or {\"event\": \"deleted\", \"identifier\": ...} "
              "when it was removed from the ledger.",
          .examples =
              " tqstore --config shop.storekit events\n"
              " tqstore --ledger shop.ledger --json events --unfinished\n"};
}

}  // namespace

void addEvents(CommandLine& line) {
  const auto unfinishedFirst = std::make_shared<bool>(false);
  auto& command = line.addOnLedger("events", manual(),
                                   [unfinishedFirst, &options = line.options()](auto& ledger) {
                                     return follow(ledger, options, *unfinishedFirst);
                                   });
  command.add_flag("--unfinished", *unfinishedFirst,
                   "Begin with the transactions that are not finished");
}

}  // namespace tqstore
