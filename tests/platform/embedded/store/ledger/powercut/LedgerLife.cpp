#include "tests/platform/embedded/store/ledger/powercut/LedgerLife.hpp"

#include <utility>

#include "platform/embedded/sqlite/SqliteDatabase.hpp"
#include "platform/embedded/store/ledger/LedgerLog.hpp"
#include "tests/platform/embedded/store/ledger/LedgerSamples.hpp"

namespace tests {

namespace {

using Foundation::detail::SqliteDatabase;
using Foundation::detail::SqliteStatements;

void settle(LedgerEntry& entry, Dice& dice) {
  entry.owner.reset();
  if (dice.oneIn(5)) {
    entry.state = State::failed;
    entry.error = Foundation::NSError::withDescription("SKErrorDomain", 2, "It was declined.");
  } else {
    entry.state = State::purchased;
    entry.transactionIdentifier = std::to_string(2'000'000'000 + entry.identifier);
    entry.transactionDate = Foundation::Date::sinceEpoch(1.7e9 + 0.001 * dice.below(1'000'000));
  }
}

}  // namespace

LedgerLife::LedgerLife(const std::string& path)
    : path_(path), start_(LedgerFiles::read(path)), ledger_(openLedger(path)), history_(*ledger_) {}

void LedgerLife::change(Durability durability, LedgerEntries& entries,
                        const std::function<Ledger::Failure()>& change) {
  const auto begun = disk_->count();
  EXPECT_FALSE(change());
  history_.entriesChanged({.begun = begun, .ended = disk_->count()}, durability, entries);
}

LedgerEntry LedgerLife::purchase(Dice& dice) const {
  static constexpr const char* kProducts[] = {"gems", "coins", "crown", "cape"};
  auto begun = entry(kProducts[dice.below(std::size(kProducts))], State::purchasing);
  begun.owner = ledger_->owner();
  begun.payment.quantity = static_cast<std::int64_t>(1 + dice.below(10));
  if (dice.oneIn(4)) begun.payment.applicationUsername = std::string(dice.below(5'000), 'u');
  return begun;
}

void LedgerLife::buy(std::size_t count, Dice& dice) {
  LedgerEntries bought;
  for (std::size_t i = 0; i < count; ++i) bought.push_back(purchase(dice));
  constexpr auto kBegin = Durability::killedProcess;
  constexpr auto kOutcome = Durability::powerCut;
  change(kBegin, bought, [&] { return ledger_->add(bought, kBegin); });
  for (auto& each : bought) settle(each, dice);
  change(kOutcome, bought, [&] {
    const auto replacement = ledger_->replace(bought, kOutcome);
    EXPECT_FALSE(replacement.conflict);
    return replacement.error;
  });
}

void LedgerLife::restore() {
  LedgerEntries restored;
  for (const auto& each : ledger_->finishedPurchases()) {
    restored.push_back(entry(each.payment.productIdentifier, State::restored));
    restored.back().original = each.identifier;
  }
  if (restored.empty()) return;
  constexpr auto kRestored = Durability::powerCut;
  change(kRestored, restored, [&] { return ledger_->add(restored, kRestored); });
}

void LedgerLife::finish(Dice& dice) {
  auto entries = ledger_->unfinished();
  std::erase_if(entries, [&](const LedgerEntry& each) {
    return each.state == State::purchasing || dice.oneIn(2);
  });
  if (entries.empty()) return;
  for (auto& each : entries) each.finished = true;
  constexpr auto kFinish = Durability::killedProcess;
  change(kFinish, entries, [&] { return ledger_->update(entries, kFinish); });
}

void LedgerLife::set(const std::string& setting, const std::optional<std::string>& value) {
  const auto begun = disk_->count();
  EXPECT_FALSE(ledger_->set(setting, value));
  history_.settingsChanged({.begun = begun, .ended = disk_->count()}, ledger_->settingsRevision(),
                           ledger_->settings());
}

void LedgerLife::tidyUp() const {
  SqliteDatabase database(path_, SQLITE_OPEN_READWRITE);
  SqliteStatements statements(database);
  StoreKit::detail::LedgerLog log(statements);
  log.tidyUp();
}

void LedgerLife::shareWithOther(Dice& dice) {
  auto other = openLedger(path_);
  std::swap(ledger_, other);
  buy(1, dice);
  std::swap(ledger_, other);
  buy(1, dice);
}

void LedgerLife::reopen() {
  ledger_.reset();
  ledger_ = openLedger(path_);
}

void LedgerLife::goOn(Dice& dice) {
  switch (dice.below(13)) {
    case 0:
      return tidyUp();
    case 1:
      return reopen();
    case 2:
      return shareWithOther(dice);
    case 3:
      return buy(1 + dice.below(8), dice);
    case 4:
      return set("locale", "de_" + std::to_string(dice.below(100)));
    case 5:
      return set("locale", std::nullopt);
    case 6:
      return restore();
    case 7:
    case 8:
    case 9:
      return finish(dice);
    default:
      return buy(1, dice);
  }
}

RecordedLife LedgerLife::end() && {
  ledger_.reset();
  auto operations = disk_->operations();
  disk_.reset();
  return {.start = std::move(start_),
          .operations = std::move(operations),
          .history = std::move(history_)};
}

}  // namespace tests
