#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakes/OpenShop.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using tests::Journal;
using tests::JournalingObserver;
using tests::OpenShop;
using tests::turnUntilIdle;

enum class Message { purchasing, purchased, removed, restored, restoreFinished, restoreFailed };
constexpr const char* kMessageNames[] = {"purchasing", "purchased",       "removed",
                                         "restored",   "restoreFinished", "restoreFailed"};
void PrintTo(Message value, std::ostream* out) { *out << kMessageNames[static_cast<int>(value)]; }

enum class Deed { add, finishAll, restore, relaunch, openAnother, removeObserver, destroyObserver };
constexpr const char* kDeedNames[] = {"add",         "finishAll",      "restore",        "relaunch",
                                      "openAnother", "removeObserver", "destroyObserver"};
void PrintTo(Deed value, std::ostream* out) { *out << kDeedNames[static_cast<int>(value)]; }

constexpr Message kMessages[] = {Message::purchasing,      Message::purchased,
                                 Message::removed,         Message::restored,
                                 Message::restoreFinished, Message::restoreFailed};
constexpr Deed kDeeds[] = {
    Deed::add,         Deed::finishAll,      Deed::restore,        Deed::relaunch,
    Deed::openAnother, Deed::removeObserver, Deed::destroyObserver};

// Two observers; the first one does its deed at one message, once.
class Reentrancy : public testing::TestWithParam<std::tuple<Message, Deed>> {
 protected:
  OpenShop shop;
  std::shared_ptr<Journal> journal = std::make_shared<Journal>();
  std::unique_ptr<JournalingObserver> actor =
      std::make_unique<JournalingObserver>(journal, "actor");
  JournalingObserver witness{journal, "witness"};
  bool done = false;

  Reentrancy() {
    actor->observe();
    witness.observe();
    shop.own("crown");
    shop.buy("gems");
  }

  void act() {
    if (std::exchange(done, true)) return;
    switch (std::get<Deed>(GetParam())) {
      case Deed::add:
        return shop.add("coins");
      case Deed::finishAll:
        for (const auto& each : OpenShop::queue().transactions()) {
          if (each->transactionState() == SKPaymentTransactionState::purchasing) continue;
          OpenShop::queue().finishTransaction(each);
        }
        return;
      case Deed::restore:
        return OpenShop::queue().restoreCompletedTransactions(std::nullopt);
      case Deed::relaunch:
        return shop.session.relaunch();
      case Deed::openAnother:
        (void)StoreSession(tests::shop());
        return;
      case Deed::removeObserver:
        return actor->stop();
      case Deed::destroyObserver:
        actor.reset();
    }
  }

  void actWhenUpdatedTo(SKPaymentTransactionState state) {
    actor->onUpdated = [this, state](const SKPaymentTransactions& transactions) {
      if (transactions.at(0)->transactionState() == state) act();
    };
  }

  // Makes the first observer act at the message, and causes the message.
  void causeMessage() {
    auto& queue = OpenShop::queue();
    switch (std::get<Message>(GetParam())) {
      case Message::purchasing:
        actWhenUpdatedTo(SKPaymentTransactionState::purchasing);
        return shop.add("cape");
      case Message::purchased:
        actWhenUpdatedTo(SKPaymentTransactionState::purchased);
        return shop.add("cape");
      case Message::removed:
        actor->onRemoved = [this] { act(); };
        return queue.finishTransaction(queue.transactions().at(0));
      case Message::restored:
        actWhenUpdatedTo(SKPaymentTransactionState::restored);
        return queue.restoreCompletedTransactions(std::nullopt);
      case Message::restoreFinished:
        actor->onRestoreFinished = [this] { act(); };
        return queue.restoreCompletedTransactions(std::nullopt);
      case Message::restoreFailed:
        actor->onRestoreFailed = [this] {
          shop.ledger->refusal.reset();
          act();
        };
        shop.ledger->refusal = Foundation::NSError("disk", 28);
        return queue.restoreCompletedTransactions(std::nullopt);
    }
  }
};

// AddressSanitizer watches; and after whatever happened, the queue must still sell and finish.
TEST_P(Reentrancy, LeavesTheQueueInOrder) {
  causeMessage();
  ASSERT_TRUE(turnUntilIdle());
  ASSERT_TRUE(done);
  journal->clear();
  shop.own("season");
  EXPECT_EQ(std::count(journal->begin(), journal->end(), "witness updated: season purchasing"), 1);
  EXPECT_EQ(std::count(journal->begin(), journal->end(), "witness updated: season purchased"), 1);
  EXPECT_EQ(std::count(journal->begin(), journal->end(), "witness removed: season purchased"), 1);
}

INSTANTIATE_TEST_SUITE_P(AnyDeedAtAnyMessage, Reentrancy,
                         testing::Combine(testing::ValuesIn(kMessages), testing::ValuesIn(kDeeds)));

}  // namespace
}  // namespace StoreKit
