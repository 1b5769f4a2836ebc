#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakes/DownloadShop.hpp"

// Callbacks about downloads that do what nobody expects them to. Run under AddressSanitizer too.

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::turnUntilIdle;

class DownloadReentry : public testing::Test {
 protected:
  tests::DownloadShop shop;
  std::unique_ptr<tests::DownloadObserver> observer = std::make_unique<tests::DownloadObserver>();
  std::shared_ptr<tests::Journal> journal = observer->journal;
  SKDownloadPtr crown = shop.buy("crown");
  SKDownloadPtr cape = shop.buy("cape");

  static SKPaymentQueue& queue() { return tests::DownloadShop::queue(); }

  // Runs `work` in the callback with that number, from 0 on, of the downloads of both.
  void during(std::size_t number, const std::function<void()>& work) {
    observer->onDownloads = [this, number, work](const SKDownloads&) {
      if (journal->size() == number + 1) work();
    };
    queue().startDownloads({crown, cape});
    (void)turnUntilIdle();
  }
};

TEST_F(DownloadReentry, PauseFromInside) {
  during(1, [&] { queue().pauseDownloads({crown}); });
  EXPECT_EQ(tests::describe({crown, cape}), "crown paused 50%, cape finished 100%");
}

TEST_F(DownloadReentry, CancelFromInsideAndStartAgain) {
  during(1, [&] {
    queue().cancelDownloads({crown, cape});
    queue().startDownloads({crown, cape});
  });
  EXPECT_EQ(tests::describe({crown, cape}), "crown finished 100%, cape finished 100%");
}

TEST_F(DownloadReentry, FailedOneIsStartedAgainFromInside) {
  shop.shop.session.failDownloads(Foundation::NSError("Net", 1));
  observer->onDownloads = [&](const SKDownloads& downloads) {
    for (const auto& download : downloads) {
      if (download->state() == SKDownloadState::failed) queue().startDownloads({download});
    }
  };
  queue().startDownloads({crown});
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe({crown}), "crown finished 100%");
}

TEST_F(DownloadReentry, FinishOfTheTransactionFromInside) {
  during(1, [&] { queue().finishTransaction(crown->transaction()); });
  EXPECT_EQ(tests::describe({crown, cape}), "crown cancelled 50%, cape finished 100%");
  EXPECT_THAT(shop.arrived(), testing::SizeIs(2));
}

TEST_F(DownloadReentry, FinishOfTheTransactionInTheLastCallback) {
  observer->onDownloads = [&](const SKDownloads& downloads) {
    for (const auto& download : downloads) {
      if (download->state() != SKDownloadState::finished) continue;
      EXPECT_EQ(tests::filesIn(tests::contentFolder(*download) + "/Contents"),
                tests::filesIn(shop.hosted(download->contentIdentifier())));
      queue().finishTransaction(download->transaction());
    }
  };
  queue().startDownloads({crown, cape});
  (void)turnUntilIdle();
  EXPECT_THAT(queue().transactions(), IsEmpty());
  EXPECT_THAT(shop.arrived(), IsEmpty());
}

TEST_F(DownloadReentry, ClearingTheTransactionsFromInside) {
  during(1, [&] { EXPECT_FALSE(shop.shop.session.clearTransactions()); });
  EXPECT_THAT(queue().transactions(), IsEmpty());
  EXPECT_THAT(shop.arrived(), IsEmpty());
  EXPECT_EQ(tests::describe({crown}), "crown cancelled 50%");
}

TEST_F(DownloadReentry, RelaunchFromInside) {
  during(1, [&] { shop.shop.session.relaunch(); });
  EXPECT_EQ(journal->size(), 2U);
  EXPECT_THAT(shop.arrived(), IsEmpty());
  EXPECT_EQ(tests::describe(queue().transactions().at(0)->downloads()), "crown waiting 0%");
}

TEST_F(DownloadReentry, AnotherStoreFromInside) {
  during(1, [&] { const StoreSession another(tests::shop()); });
  EXPECT_EQ(journal->size(), 2U);
  EXPECT_THAT(shop.arrived(), IsEmpty());
  EXPECT_THAT(queue().transactions(), IsEmpty());
}

TEST_F(DownloadReentry, ObserverThatGoesAwayInsideIsNotCalledAgain) {
  during(1, [&] { observer.reset(); });
  EXPECT_EQ(journal->size(), 2U);
}

TEST_F(DownloadReentry, ObserverThatGoesAwayInsideLeavesTheOthersTold) {
  const tests::DownloadObserver second;
  during(1, [&] { observer.reset(); });
  EXPECT_EQ(second.journal->back(), "crown finished 100%");
}

TEST_F(DownloadReentry, ObserverThatComesInsideHearsWhatFollows) {
  std::unique_ptr<tests::DownloadObserver> second;
  during(3, [&] { second = std::make_unique<tests::DownloadObserver>(); });
  EXPECT_THAT(*second->journal, ElementsAre("crown finished 100%"));
}

TEST_F(DownloadReentry, SpeedFromInside) {
  during(0, [&] { EXPECT_FALSE(shop.shop.session.setDownloadSpeed(5)); });
  EXPECT_EQ(tests::describe({crown, cape}), "crown active 0%, cape active 0%");
  shop.moveClock(2);
  EXPECT_EQ(tests::describe({crown, cape}), "crown active 10%, cape active 50%");
}

TEST_F(DownloadReentry, DownloadsAreGoodForAsLongAsTheyAreHeld) {
  observer->onDownloads = [&](const SKDownloads&) {
    queue().finishTransaction(crown->transaction());
    crown = nullptr;
    observer->onDownloads = nullptr;
  };
  queue().startDownloads({crown});
  (void)turnUntilIdle();
  EXPECT_EQ(journal->back(), "crown cancelled 25%");
}

}  // namespace
}  // namespace StoreKit
