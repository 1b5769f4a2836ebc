// What every ledger owes the store, tried on each kind of ledger.

#include "platform/embedded/store/Ledger.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "platform/StoreKit/SKError.hpp"
#include "platform/embedded/store/MemoryLedger.hpp"
#include "platform/embedded/store/ledger/SqliteLedger.hpp"

namespace StoreKit {
namespace {

using State = SKPaymentTransactionState;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kRelaxed = Ledger::Durability::killedProcess;
constexpr auto kDurable = Ledger::Durability::powerCut;

std::unique_ptr<Ledger> memoryLedger() { return std::make_unique<MemoryLedger>(); }
std::unique_ptr<Ledger> sqliteLedger() { return SqliteLedger::open(":memory:").ledger; }

LedgerEntry entry(const std::string& product, State state = State::purchased,
                  bool finished = false) {
  LedgerEntry entry;
  entry.payment.productIdentifier = product;
  entry.state = state;
  entry.finished = finished;
  return entry;
}

std::vector<std::string> products(const LedgerEntries& entries) {
  std::vector<std::string> names;
  for (const auto& each : entries) names.push_back(each.payment.productIdentifier);
  return names;
}

class LedgerContract : public testing::TestWithParam<std::unique_ptr<Ledger> (*)()> {
 protected:
  LedgerEntries add(LedgerEntries entries) {
    EXPECT_FALSE(ledger_->add(entries, kRelaxed));
    return entries;
  }

  std::unique_ptr<Ledger> ledger_ = GetParam()();
};

TEST_P(LedgerContract, IsEmptyToBeginWith) {
  EXPECT_THAT(ledger_->all(), IsEmpty());
  EXPECT_THAT(ledger_->unfinished(), IsEmpty());
  EXPECT_THAT(ledger_->finishedPurchases(), IsEmpty());
}

TEST_P(LedgerContract, NumbersEntriesInTheOrderInWhichTheyAreAdded) {
  const auto first = add({entry("a"), entry("b")});
  const auto second = add({entry("c")});

  EXPECT_LT(0, first[0].identifier);
  EXPECT_LT(first[0].identifier, first[1].identifier);
  EXPECT_LT(first[1].identifier, second[0].identifier);
}

TEST_P(LedgerContract, FillsInWhatDependsOnTheNumber) {
  LedgerEntries entries = {entry("a")};
  EXPECT_FALSE(ledger_->add(entries, kDurable, [](LedgerEntry& added) {
    added.transactionIdentifier = "id " + std::to_string(added.identifier);
  }));

  const auto expected = "id " + std::to_string(entries[0].identifier);
  EXPECT_EQ(entries[0].transactionIdentifier, expected);
  EXPECT_EQ(ledger_->find(entries[0].identifier)->transactionIdentifier, expected);
}

TEST_P(LedgerContract, FindsNothingUnderANumberThatItDidNotGive) {
  add({entry("a")});

  EXPECT_FALSE(ledger_->find(77));
}

TEST_P(LedgerContract, TakesBackThatSomethingIsFinished) {
  auto deferred = entry("a", State::deferred);
  deferred.finished = true;
  auto entries = add({deferred});
  entries[0].state = State::purchased;
  entries[0].finished = false;

  ASSERT_FALSE(ledger_->update(entries, kRelaxed));

  EXPECT_FALSE(entries[0].finished);
  EXPECT_FALSE(ledger_->find(entries[0].identifier)->finished);
  EXPECT_EQ(ledger_->unfinished().size(), 1U);
}

TEST_P(LedgerContract, KnowsWhatIsOver) {
  auto finished = entry("a");
  finished.finished = true;
  auto deleted = entry("b");
  deleted.deleted = true;
  const auto entries = add({finished, deleted, entry("c")});

  EXPECT_TRUE(ledger_->isOver(entries[0].identifier));
  EXPECT_TRUE(ledger_->isOver(entries[1].identifier));
  EXPECT_FALSE(ledger_->isOver(entries[2].identifier));
  EXPECT_TRUE(ledger_->isOver(77));
}

TEST_P(LedgerContract, KeepsEveryFieldAsItWas) {
  auto whole = entry("gems \U0001F48E", State::failed);
  whole.payment.quantity = 7;
  whole.payment.requestData = {std::byte{0}, std::byte{255}};
  whole.payment.applicationUsername = "";
  whole.payment.simulatesAskToBuyInSandbox = true;
  whole.payment.paymentDiscount = SKPaymentDiscount{.identifier = "offer",
                                                    .keyIdentifier = "key",
                                                    .nonce = "nonce",
                                                    .signature = "signature",
                                                    .timestamp = 1'600'000'000'123};
  whole.owner = 5;
  whole.transactionIdentifier = "2000000001";
  whole.transactionDate = Foundation::Date::sinceEpoch(1234567.0625);
  whole.original = 3;
  const Foundation::NSError beneath("Beneath", -1009);
  whole.error = Foundation::NSError("Domain", 12,
                                    {{"NSLocalizedDescription", std::string("why")},
                                     {"count", std::int64_t{-3}},
                                     {"share", 0.5},
                                     {"flag", true},
                                     {"NSUnderlyingError", beneath}});
  const auto added = add({whole});

  const auto kept = ledger_->find(added[0].identifier);

  ASSERT_TRUE(kept);
  EXPECT_EQ(kept->payment.productIdentifier, whole.payment.productIdentifier);
  EXPECT_EQ(kept->payment.quantity, 7);
  EXPECT_EQ(kept->payment.requestData, whole.payment.requestData);
  EXPECT_EQ(kept->payment.applicationUsername, "");
  EXPECT_TRUE(kept->payment.simulatesAskToBuyInSandbox);
  ASSERT_TRUE(kept->payment.paymentDiscount);
  EXPECT_EQ(kept->payment.paymentDiscount->identifier, "offer");
  EXPECT_EQ(kept->payment.paymentDiscount->keyIdentifier, "key");
  EXPECT_EQ(kept->payment.paymentDiscount->nonce, "nonce");
  EXPECT_EQ(kept->payment.paymentDiscount->signature, "signature");
  EXPECT_EQ(kept->payment.paymentDiscount->timestamp, 1'600'000'000'123);
  EXPECT_EQ(kept->state, State::failed);
  EXPECT_EQ(kept->owner, 5);
  EXPECT_EQ(kept->transactionIdentifier, "2000000001");
  EXPECT_EQ(kept->transactionDate->timeIntervalSince1970(), 1234567.0625);
  EXPECT_EQ(kept->original, 3);
  EXPECT_FALSE(kept->finished);
  ASSERT_TRUE(kept->error);
  EXPECT_EQ(kept->error->domain(), "Domain");
  EXPECT_EQ(kept->error->code(), 12);
  EXPECT_EQ(kept->error->localizedDescription(), "why");
  EXPECT_EQ(std::any_cast<std::int64_t>(kept->error->userInfo().at("count")), -3);
  EXPECT_EQ(std::any_cast<double>(kept->error->userInfo().at("share")), 0.5);
  EXPECT_EQ(std::any_cast<bool>(kept->error->userInfo().at("flag")), true);
  EXPECT_EQ(kept->error->underlyingError()->code(), -1009);
}

TEST_P(LedgerContract, WhatIsAbsentStaysAbsent) {
  const auto added = add({entry("a", State::purchasing)});

  const auto kept = ledger_->find(added[0].identifier);

  EXPECT_FALSE(kept->payment.applicationUsername);
  EXPECT_FALSE(kept->payment.requestData);
  EXPECT_FALSE(kept->payment.paymentDiscount);
  EXPECT_FALSE(kept->owner);
  EXPECT_FALSE(kept->transactionIdentifier);
  EXPECT_FALSE(kept->transactionDate);
  EXPECT_FALSE(kept->error);
  EXPECT_FALSE(kept->original);
}

TEST_P(LedgerContract, ListsTheUnfinishedAndTheFinishedPurchasesApart) {
  add({entry("a"), entry("b", State::purchased, true), entry("c", State::failed),
       entry("d", State::restored, true), entry("e", State::purchased, true)});

  EXPECT_THAT(products(ledger_->unfinished()), ElementsAre("a", "c"));
  EXPECT_THAT(products(ledger_->finishedPurchases()), ElementsAre("b", "e"));
  EXPECT_THAT(products(ledger_->all()), ElementsAre("a", "b", "c", "d", "e"));
}

TEST_P(LedgerContract, UpdateChangesAnEntryInItsPlace) {
  auto entries = add({entry("a", State::purchasing), entry("b")});
  entries.pop_back();
  entries[0].state = State::failed;

  EXPECT_FALSE(ledger_->update(entries, kDurable));

  EXPECT_EQ(ledger_->find(entries[0].identifier)->state, State::failed);
  EXPECT_THAT(products(ledger_->all()), ElementsAre("a", "b"));
}

TEST_P(LedgerContract, UpdateLeavesWhatSomebodyElseHasChangedSince) {
  const auto read = add({entry("a", State::purchasing)});
  auto theirs = read;
  theirs[0].state = State::purchased;
  EXPECT_FALSE(ledger_->update(theirs, kDurable));
  auto ours = read;
  ours[0].state = State::failed;

  EXPECT_FALSE(ledger_->update(ours, kDurable));

  EXPECT_EQ(ours[0].state, State::purchased);
  EXPECT_EQ(ledger_->find(read[0].identifier)->state, State::purchased);
}

TEST_P(LedgerContract, EveryChangeRaisesTheRevision) {
  const auto before = ledger_->revision();
  auto entries = add({entry("a")});
  const auto afterAdding = ledger_->revision();
  EXPECT_FALSE(ledger_->update(entries, kRelaxed));

  EXPECT_LT(before, afterAdding);
  EXPECT_LT(afterAdding, ledger_->revision());
  EXPECT_EQ(entries[0].revision, ledger_->revision());
}

TEST_P(LedgerContract, TellsWhatChangedAfterARevisionInTheOrderOfTheChanges) {
  auto first = add({entry("a")});
  const auto known = ledger_->revision();
  add({entry("b")});
  EXPECT_FALSE(ledger_->update(first, kRelaxed));

  EXPECT_THAT(products(ledger_->changedAfter(known)), ElementsAre("b", "a"));
  EXPECT_THAT(ledger_->changedAfter(ledger_->revision()), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Memory, LedgerContract, testing::Values(&memoryLedger));
INSTANTIATE_TEST_SUITE_P(Sqlite, LedgerContract, testing::Values(&sqliteLedger));

}  // namespace
}  // namespace StoreKit
