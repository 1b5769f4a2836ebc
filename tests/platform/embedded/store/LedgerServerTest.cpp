// What every ledger owes the store's server, tried on each kind of ledger: replacements, periods of
// subscriptions, refunds, settings.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/embedded/store/MemoryLedger.hpp"
#include "tests/platform/embedded/store/ledger/LedgerInFolder.hpp"

namespace StoreKit {
namespace {

using Foundation::Date;
using State = SKPaymentTransactionState;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using tests::products;

constexpr auto kRelaxed = Ledger::Durability::killedProcess;
constexpr auto kDurable = Ledger::Durability::powerCut;

enum class Kind { memory, sqlite, file };

LedgerEntry entry(const std::string& product, bool finished = false) {
  auto entry = tests::entry(product, State::purchased);
  entry.finished = finished;
  return entry;
}

LedgerEntry periodOf(const std::string& group, const std::string& product, bool running = true) {
  auto bought = entry(product);
  bought.period = {
      .group = group, .ends = Date::sinceEpoch(1234.5), .running = running, .renewsAs = product};
  return bought;
}

class LedgerServerContract : public testing::TestWithParam<Kind> {
 protected:
  LedgerEntries add(LedgerEntries entries) {
    EXPECT_FALSE(ledger->add(entries, kRelaxed));
    return entries;
  }
  void change(LedgerEntry entry) {
    LedgerEntries entries = {std::move(entry)};
    EXPECT_FALSE(ledger->update(entries, kRelaxed));
  }
  LedgerEntry kept(std::int64_t identifier) { return ledger->find(identifier).value(); }

  // What is kept is what a later program reads, where one could.
  void reopen() {
    if (GetParam() != Kind::file) return;
    ledger.reset();
    ledger = tests::openLedger(path);
  }

  std::unique_ptr<Ledger> open() {
    if (GetParam() == Kind::memory) return std::make_unique<MemoryLedger>();
    return tests::openLedger(GetParam() == Kind::sqlite ? ":memory:" : path);
  }

  tests::TemporaryFolder folder;
  std::string path = folder.file("shop.ledger");
  std::unique_ptr<Ledger> ledger = open();
};

TEST_P(LedgerServerContract, KeepsEveryFieldOfAPeriod) {
  auto whole = periodOf("readers", "monthly", false);
  whole.period->renews = false;
  whole.period->renewsAs = "basic";
  whole.period->renewsWithOffer = "cheap";
  whole.period->retryingSince = Date::sinceEpoch(0.125);
  whole.period->asksForPriceIncrease = true;
  const auto added = add({whole, periodOf("", "weekly")});
  reopen();
  EXPECT_EQ(kept(added[0].identifier).period, whole.period);
  EXPECT_EQ(kept(added[1].identifier).period, periodOf("", "weekly").period);
}

TEST_P(LedgerServerContract, KeepsWhatTheServerKnowsOfATransaction) {
  auto whole = entry("gems");
  whole.cancelDate = Date::sinceEpoch(99.5);
  whole.refundRevision = 7;
  whole.hasPurchaseIssue = true;
  whole.asksApplication = true;
  const auto added = add({whole, entry("coins")});
  reopen();
  const auto full = kept(added[0].identifier);
  EXPECT_EQ(full.cancelDate, whole.cancelDate);
  EXPECT_EQ(full.refundRevision, 7);
  EXPECT_TRUE(full.hasPurchaseIssue);
  EXPECT_TRUE(full.asksApplication);
  EXPECT_FALSE(full.period);
  const auto plain = kept(added[1].identifier);
  EXPECT_FALSE(plain.cancelDate);
  EXPECT_FALSE(plain.refundRevision);
  EXPECT_FALSE(plain.hasPurchaseIssue);
  EXPECT_FALSE(plain.asksApplication);
}

TEST_P(LedgerServerContract, ReplaceChangesWhatIsThereAndAddsWhatIsNew) {
  auto entries = add({entry("a")});
  entries[0].finished = true;
  entries.push_back(entry("b"));
  const auto written = ledger->replace(entries, kDurable);
  EXPECT_FALSE(written.error);
  EXPECT_FALSE(written.conflict);
  EXPECT_EQ(entries[1].identifier, entries[0].identifier + 1);
  EXPECT_TRUE(kept(entries[0].identifier).finished);
  EXPECT_THAT(products(ledger->all()), ElementsAre("a", "b"));
}

TEST_P(LedgerServerContract, ReplaceLetsWhatIsNewBeCompletedAndLeavesTheRest) {
  auto entries = add({entry("a")});
  entries.push_back(entry("b"));
  (void)ledger->replace(entries, kDurable, [](LedgerEntry& added) {
    added.transactionIdentifier = std::to_string(added.identifier);
  });
  EXPECT_FALSE(kept(entries[0].identifier).transactionIdentifier);
  EXPECT_EQ(kept(entries[1].identifier).transactionIdentifier,
            std::to_string(entries[1].identifier));
  EXPECT_EQ(entries[1].transactionIdentifier, std::to_string(entries[1].identifier));
}

TEST_P(LedgerServerContract, ReplaceWritesNothingWhenSomebodyElseHasChangedOneOfThem) {
  const auto read = add({entry("a"), entry("b")});
  auto theirs = read[1];
  theirs.finished = true;
  change(theirs);
  auto ours = read;
  ours[0].finished = true;
  ours.push_back(entry("c"));
  const auto before = ledger->revision();

  const auto written = ledger->replace(ours, kDurable);

  EXPECT_TRUE(written.conflict);
  EXPECT_FALSE(written.error);
  EXPECT_FALSE(kept(read[0].identifier).finished);
  EXPECT_THAT(products(ledger->all()), ElementsAre("a", "b"));
  EXPECT_EQ(ledger->revision(), before);
  EXPECT_EQ(ours[2].identifier, 0);
}

TEST_P(LedgerServerContract, ReplaceMakesNoSecondRunningPeriodOfAGroup) {
  const auto theirs = add({periodOf("readers", "monthly")});
  LedgerEntries ours = {periodOf("readers", "yearly")};
  EXPECT_TRUE(ledger->replace(ours, kDurable).conflict);
  EXPECT_THAT(products(ledger->all()), ElementsAre("monthly"));

  ours.push_back(theirs[0]);
  ours[1].period->running = false;
  EXPECT_FALSE(ledger->replace(ours, kDurable).conflict);
  EXPECT_THAT(products(ledger->runningPeriods()), ElementsAre("yearly"));
}

TEST_P(LedgerServerContract, ReplaceLetsAnotherGroupRunBesideIt) {
  (void)add({periodOf("readers", "monthly"), periodOf("runners", "weekly", false)});
  LedgerEntries ours = {periodOf("runners", "weekly")};
  EXPECT_FALSE(ledger->replace(ours, kDurable).conflict);
  EXPECT_THAT(products(ledger->runningPeriods()), ElementsAre("monthly", "weekly"));
}

TEST_P(LedgerServerContract, ReplaceRaisesTheRevisionOfEachAndIsSeenAsAChange) {
  auto entries = add({entry("a")});
  const auto before = ledger->revision();
  entries.push_back(entry("b"));
  (void)ledger->replace(entries, kDurable);
  EXPECT_LT(before, entries[0].revision);
  EXPECT_LT(before, entries[1].revision);
  EXPECT_THAT(products(ledger->changedAfter(before)), ElementsAre("a", "b"));
}

TEST_P(LedgerServerContract, WhatIsDeletedIsOnlyAChangeAnyMore) {
  auto gone = add({entry("a", true), entry("b")})[0];
  const auto before = ledger->revision();
  gone.deleted = gone.finished = true;
  change(gone);
  EXPECT_FALSE(ledger->find(gone.identifier));
  EXPECT_THAT(products(ledger->all()), ElementsAre("b"));
  EXPECT_THAT(ledger->finishedPurchases(), IsEmpty());
  EXPECT_THAT(products(ledger->unfinished()), ElementsAre("b"));
  ASSERT_THAT(products(ledger->changedAfter(before)), ElementsAre("a"));
  EXPECT_TRUE(ledger->changedAfter(before)[0].deleted);
}

TEST_P(LedgerServerContract, NeverGivesTheNumberOfADeletedOneAgain) {
  auto gone = add({entry("a")})[0];
  gone.deleted = gone.finished = true;
  change(gone);
  reopen();
  EXPECT_LT(gone.identifier, add({entry("b")})[0].identifier);
}

TEST_P(LedgerServerContract, ListsTheRunningPeriods) {
  auto added = add({periodOf("readers", "monthly"), periodOf("readers", "gold", false),
                    periodOf("runners", "weekly"), entry("gems")});
  reopen();
  EXPECT_THAT(products(ledger->runningPeriods()), ElementsAre("monthly", "weekly"));
  added[0].period->running = false;
  change(added[0]);
  EXPECT_THAT(products(ledger->runningPeriods()), ElementsAre("weekly"));
}

TEST_P(LedgerServerContract, KnowsTheFirstPeriodOfAGroup) {
  add({entry("gems"), periodOf("runners", "weekly"), periodOf("readers", "monthly", false),
       periodOf("readers", "gold")});
  EXPECT_EQ(ledger->firstPeriod("readers")->payment.productIdentifier, "monthly");
  EXPECT_FALSE(ledger->firstPeriod("nobody"));
  EXPECT_FALSE(ledger->firstPeriod(""));
}

TEST_P(LedgerServerContract, ARefundBearsTheRevisionInWhichItHappened) {
  auto refunded = add({entry("a")})[0];
  refunded.cancelDate = Date::sinceEpoch(5);
  change(refunded);
  const auto revision = ledger->revision();
  EXPECT_EQ(kept(refunded.identifier).refundRevision, revision);
  auto later = kept(refunded.identifier);
  later.finished = true;
  change(later);
  EXPECT_EQ(kept(refunded.identifier).refundRevision, revision);
}

TEST_P(LedgerServerContract, RefundsAreUntoldInTheirOrderUntilTheyAreTold) {
  const auto added = add({entry("a"), entry("b"), entry("c")});
  EXPECT_THAT(ledger->untoldRefunds(), IsEmpty());
  for (const std::size_t each : {2, 0, 1}) {
    auto refunded = added[each];
    refunded.cancelDate = Date::sinceEpoch(5);
    change(refunded);
  }
  reopen();
  const auto untold = ledger->untoldRefunds();
  EXPECT_THAT(products(untold), ElementsAre("c", "a", "b"));
  EXPECT_FALSE(ledger->tellRefunds(*untold[1].refundRevision));
  reopen();
  EXPECT_THAT(products(ledger->untoldRefunds()), ElementsAre("b"));
}

TEST_P(LedgerServerContract, RefundsThatWereToldAreNotUntoldByAnOlderWord) {
  auto refunded = add({entry("a")})[0];
  refunded.cancelDate = Date::sinceEpoch(5);
  change(refunded);
  EXPECT_FALSE(ledger->tellRefunds(100));
  EXPECT_FALSE(ledger->tellRefunds(0));
  EXPECT_THAT(ledger->untoldRefunds(), IsEmpty());
}

TEST_P(LedgerServerContract, KeepsSettingsByName) {
  EXPECT_THAT(ledger->settings(), IsEmpty());
  EXPECT_FALSE(ledger->set("locale", "de_DE"));
  EXPECT_FALSE(ledger->set("storefront", "DEU"));
  EXPECT_FALSE(ledger->set("locale", "fr \U0001F48E"));
  reopen();
  EXPECT_THAT(ledger->settings(),
              ElementsAre(Pair("locale", "fr \U0001F48E"), Pair("storefront", "DEU")));
  EXPECT_FALSE(ledger->set("locale", std::nullopt));
  EXPECT_THAT(ledger->settings(), ElementsAre(Pair("storefront", "DEU")));
  EXPECT_FALSE(ledger->clearSettings());
  EXPECT_THAT(ledger->settings(), IsEmpty());
}

TEST_P(LedgerServerContract, TellsSettingsFromTransactionsByTheirRevision) {
  const auto before = ledger->settingsRevision();
  add({entry("a")});
  EXPECT_EQ(ledger->settingsRevision(), before);
  const auto known = ledger->revision();
  EXPECT_FALSE(ledger->set("locale", "fr"));
  const auto afterSetting = ledger->settingsRevision();
  EXPECT_LT(before, afterSetting);
  EXPECT_FALSE(ledger->set("locale", std::nullopt));
  EXPECT_LT(afterSetting, ledger->settingsRevision());
  const auto afterTaking = ledger->settingsRevision();
  EXPECT_FALSE(ledger->clearSettings());
  EXPECT_LT(afterTaking, ledger->settingsRevision());
  EXPECT_THAT(ledger->changedAfter(known), IsEmpty());
}

TEST_P(LedgerServerContract, AnEntryThatIsNotThereCannotBeChanged) {
  auto stranger = entry("a");
  stranger.identifier = 77;
  LedgerEntries entries = {stranger};
  EXPECT_TRUE(ledger->update(entries, kRelaxed));
  EXPECT_TRUE(ledger->replace(entries, kRelaxed).error);
  EXPECT_THAT(ledger->all(), IsEmpty());
  EXPECT_FALSE(ledger->find(77));
}

std::string nameOf(const testing::TestParamInfo<Kind>& test) {
  constexpr const char* kNames[] = {"Memory", "Sqlite", "File"};
  return kNames[static_cast<int>(test.param)];
}

INSTANTIATE_TEST_SUITE_P(Each, LedgerServerContract,
                         testing::Values(Kind::memory, Kind::sqlite, Kind::file), nameOf);

}  // namespace
}  // namespace StoreKit
