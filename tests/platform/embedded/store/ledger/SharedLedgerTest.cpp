// Two programs on one ledger: this one is an application, the neighbour is the other.

#include <gmock/gmock.h>

#include <chrono>

#include "platform/StoreKit/SKPaymentQueue.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "platform/embedded/store/StoreSession.hpp"
#include "tests/fakes/JournalingObserver.hpp"
#include "tests/fakes/MainQueueTurns.hpp"
#include "tests/fakes/ShopConfigurations.hpp"
#include "tests/fakes/TemporaryFolder.hpp"
#include "tests/platform/embedded/store/ledger/ChildProcess.hpp"
#include "tests/platform/embedded/store/ledger/LedgerSamples.hpp"

namespace tests {
namespace {

using namespace std::chrono_literals;
using StoreKit::SKPaymentQueue;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class SharedLedger : public testing::Test {
 protected:
  void launch() {
    session.emplace(shop(), StoreKit::StoreSources(), openLedger(path));
    observer.observe();
    (void)turnUntilIdle();
  }

  // Runs the main queue until so much was reported; false when that does not happen.
  bool reported(std::size_t lines) {
    const auto end = std::chrono::steady_clock::now() + 5s;
    while (observer.journal().size() < lines && std::chrono::steady_clock::now() < end) {
      Dispatch::MainLoop::runFor(10ms);
    }
    return observer.journal().size() >= lines;
  }

  void buy(const std::string& product) {
    SKPaymentQueue::defaultQueue().addPayment(StoreKit::SKPayment({.productIdentifier = product}));
    (void)turnUntilIdle();
  }

  // The opening of the neighbour is done with its first answer.
  void meetNeighbour() { neighbour.ask("states"); }

  TemporaryFolder folder;
  std::string path = folder.file("shop.ledger");
  ChildProgram neighbour{{LEDGER_NEIGHBOUR, path}};
  JournalingObserver observer;
  std::optional<StoreKit::StoreSession> session;
};

TEST_F(SharedLedger, AnOutcomeOfAnotherProgramIsReported) {
  launch();

  ASSERT_EQ(neighbour.ask("add gems"), "1");

  EXPECT_TRUE(reported(1));
  EXPECT_THAT(observer.journal(), ElementsAre("updated: gems purchased"));
  EXPECT_EQ(SKPaymentQueue::defaultQueue().transactions().size(), 1U);
}

TEST_F(SharedLedger, AFinishOfAnotherProgramIsARemoval) {
  meetNeighbour();
  launch();
  buy("gems");
  observer.forget();

  ASSERT_EQ(neighbour.ask("finish 1"), "done");

  EXPECT_TRUE(reported(1));
  EXPECT_THAT(observer.journal(), ElementsAre("removed: gems purchased"));
  EXPECT_THAT(SKPaymentQueue::defaultQueue().transactions(), IsEmpty());
}

TEST_F(SharedLedger, FinishingFromBothIsOneRemoval) {
  meetNeighbour();
  launch();
  buy("gems");
  observer.forget();
  SKPaymentQueue::defaultQueue().finishTransaction(
      observer.seen.empty() ? SKPaymentQueue::defaultQueue().transactions()[0] : observer.seen[0]);
  ASSERT_EQ(neighbour.ask("finish 1"), "done");  // before this program's own turn comes

  (void)turnUntilIdle();
  ASSERT_EQ(neighbour.ask("finish 1"), "done");
  ASSERT_EQ(neighbour.ask("add coins"), "2");  // heard of only after all that was before

  EXPECT_TRUE(reported(2));
  EXPECT_THAT(observer.journal(),
              ElementsAre("removed: gems purchased", "updated: coins purchased"));
  EXPECT_EQ(neighbour.ask("states"), "1f1");
}

TEST_F(SharedLedger, APurchaseUnderWayBelongsToItsLivingProgram) {
  ASSERT_EQ(neighbour.ask("begin gems"), "1");

  launch();
  buy("coins");

  EXPECT_THAT(observer.journal(),
              ElementsAre("updated: coins purchasing", "updated: coins purchased"));
  EXPECT_EQ(neighbour.ask("states"), "01");
}

TEST_F(SharedLedger, APurchaseOfAKilledProgramIsCarriedOnAtTheNextStart) {
  ASSERT_EQ(neighbour.ask("begin gems"), "1");
  neighbour.end(SIGKILL);

  launch();

  EXPECT_THAT(observer.journal(),
              ElementsAre("updated: gems purchasing", "updated: gems purchased"));
}

TEST_F(SharedLedger, AProgramThatOnlyLooksTakesNothingOver) {
  ASSERT_EQ(neighbour.ask("begin gems"), "1");
  neighbour.end(SIGKILL);
  const auto owner = openLedger(path)->find(1)->owner;

  session.emplace(shop(), StoreKit::StoreSources(), openLedger(path));
  (void)turnUntilIdle();
  EXPECT_EQ(openLedger(path)->find(1)->owner, owner);

  observer.observe();
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(),
              ElementsAre("updated: gems purchasing", "updated: gems purchased"));
}

TEST_F(SharedLedger, AProgramThatIsNotTheApplicationTakesNothingOver) {
  ASSERT_EQ(neighbour.ask("begin gems"), "1");
  neighbour.end(SIGKILL);
  StoreKit::StoreSession::setIsForApplication(false);
  launch();
  buy("coins");
  EXPECT_THAT(observer.journal(),
              ElementsAre("updated: coins purchasing", "updated: coins purchased"));
  EXPECT_EQ(openLedger(path)->find(1)->state, State::purchasing);
}

TEST_F(SharedLedger, APurchaseOfAKilledProgramHasOneHeirOnly) {
  ASSERT_EQ(neighbour.ask("begin gems"), "1");
  neighbour.end(SIGKILL);
  const auto first = openLedger(path);
  const auto second = openLedger(path);

  EXPECT_FALSE(first->adoptOrphans());
  EXPECT_FALSE(second->adoptOrphans());

  EXPECT_EQ(second->find(1)->owner, first->owner());
}

TEST_F(SharedLedger, WhatHasAnOutcomeIsTakenOverByNobody) {
  ASSERT_EQ(neighbour.ask("add gems"), "1");
  neighbour.end(SIGKILL);
  const auto ledger = openLedger(path);
  const auto before = ledger->find(1)->revision;

  EXPECT_FALSE(ledger->adoptOrphans());

  EXPECT_EQ(ledger->find(1)->owner, std::nullopt);
  EXPECT_EQ(ledger->find(1)->revision, before);
}

TEST_F(SharedLedger, AnOwnerIsKnownAfterAChangeOfTheFolder) {
  ASSERT_EQ(neighbour.ask("begin gems"), "1");
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  const auto ledger = openLedger("shop.ledger");
  std::filesystem::current_path(before);

  EXPECT_FALSE(ledger->adoptOrphans());

  EXPECT_NE(ledger->find(1)->owner, ledger->owner());
}

TEST_F(SharedLedger, AnOwnerIsKnownByAnyNameOfTheLedger) {
  ASSERT_EQ(neighbour.ask("begin gems"), "1");
  std::filesystem::create_symlink("shop.ledger", folder.file("link.ledger"));
  const auto ledger = openLedger(folder.file("link.ledger"));

  EXPECT_FALSE(ledger->adoptOrphans());

  EXPECT_NE(ledger->find(1)->owner, ledger->owner());
}

TEST_F(SharedLedger, AProgramThatIsKilledInTheMiddleOfAWriteBlocksNobody) {
  ASSERT_EQ(neighbour.ask("add gems"), "1");
  ASSERT_EQ(neighbour.ask("hold"), "holding");
  const auto before = std::chrono::steady_clock::now();
  neighbour.end(SIGKILL);

  launch();
  buy("coins");

  EXPECT_LT(std::chrono::steady_clock::now() - before, 5s);
  EXPECT_THAT(observer.journal(),
              ElementsAre("updated: gems purchased", "updated: coins purchasing",
                          "updated: coins purchased"));
}

TEST_F(SharedLedger, TwoProgramsBuyAtTheSameTime) {
  launch();
  for (int i = 0; i < 20; ++i) {
    neighbour.order("add gems");
    buy("coins");
  }
  for (int i = 0; i < 20; ++i) ASSERT_NE(neighbour.line(), "(nothing)");

  const auto& queue = SKPaymentQueue::defaultQueue();
  const auto end = std::chrono::steady_clock::now() + 5s;
  while (queue.transactions().size() < 40 && std::chrono::steady_clock::now() < end) {
    Dispatch::MainLoop::runFor(10ms);
  }
  EXPECT_EQ(queue.transactions().size(), 40U);
  EXPECT_EQ(neighbour.ask("states"), std::string(40, '1'));
}

TEST_F(SharedLedger, TwoProgramsMakeTheLedgerAtTheSameTime) {
  for (int round = 0; round < 20; ++round) {
    const auto fresh = folder.file(std::to_string(round));
    ChildProgram first({LEDGER_NEIGHBOUR, fresh});
    ChildProgram second({LEDGER_NEIGHBOUR, fresh});
    first.order("add gems");
    second.order("add coins");
    EXPECT_THAT((std::vector{first.line(), second.line()}), UnorderedElementsAre("1", "2"));
    EXPECT_EQ(first.ask("states"), "11");
    first.end(0);
    second.end(0);
  }
}

}  // namespace
}  // namespace tests
