#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakes/DownloadShop.hpp"
#include "tests/fakes/FakeDownload.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using tests::turn;
using tests::turnUntilIdle;

class Downloads : public testing::Test {
 protected:
  tests::DownloadShop shop;
  tests::DownloadObserver observer;

  static SKPaymentQueue& queue() { return tests::DownloadShop::queue(); }
  [[nodiscard]] const tests::Journal& journal() const { return *observer.journal; }
};

TEST_F(Downloads, PurchasedTransactionHasOneThatWaits) {
  const auto download = shop.buy("crown");
  EXPECT_EQ(download->state(), SKDownloadState::waiting);
  EXPECT_EQ(download->progress(), 0.0F);
  EXPECT_EQ(download->contentIdentifier(), "crown");
  EXPECT_EQ(download->contentLength(), 100);
  EXPECT_EQ(download->contentVersion(), "1.0");
  EXPECT_EQ(download->contentURL(), std::nullopt);
  EXPECT_EQ(download->timeRemaining(), std::nullopt);
  EXPECT_FALSE(download->error().has_value());
}

TEST_F(Downloads, RestoredTransactionHasOneThatWaits) {
  queue().finishTransaction(shop.buy("crown")->transaction());
  (void)turnUntilIdle();
  queue().restoreCompletedTransactions(std::nullopt);
  (void)turnUntilIdle();
  const auto restored = queue().transactions().at(0);
  EXPECT_EQ(restored->transactionState(), SKPaymentTransactionState::restored);
  EXPECT_EQ(tests::describe(restored->downloads()), "crown waiting 0%");
  EXPECT_THAT(restored->originalTransaction()->downloads(), IsEmpty());
}

TEST_F(Downloads, OnlyWhatIsHostedIsDownloaded) {
  EXPECT_THAT(shop.shop.buy("gems")->downloads(), IsEmpty());
}

TEST_F(Downloads, FailedPurchaseHasNone) {
  shop.shop.session.cancelPurchases();
  EXPECT_THAT(shop.shop.buy("crown")->downloads(), IsEmpty());
}

TEST_F(Downloads, DeferredPurchaseHasThemOnceItIsApproved) {
  shop.shop.session.setAskToBuyEnabled(true);
  const auto transaction = shop.shop.buy("crown");
  EXPECT_THAT(transaction->downloads(), IsEmpty());
  ASSERT_FALSE(shop.shop.session.approveAskToBuyTransaction(1));
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe(transaction->downloads()), "crown waiting 0%");
}

TEST_F(Downloads, TransactionHasTheSameOneEveryTime) {
  const auto transaction = shop.shop.buy("crown");
  EXPECT_EQ(transaction->downloads().at(0), transaction->downloads().at(0));
  EXPECT_EQ(transaction->downloads().at(0)->transaction(), transaction);
}

TEST_F(Downloads, NothingBeginsByItself) {
  (void)shop.buy("crown");
  EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(Downloads, StartIsHeardOfInALaterTurn) {
  const auto download = shop.buy("crown");
  queue().startDownloads({download});
  EXPECT_EQ(download->state(), SKDownloadState::waiting);
  EXPECT_THAT(journal(), IsEmpty());
  turn();
  EXPECT_THAT(journal(), ElementsAre("crown active 0%"));
}

TEST_F(Downloads, ComePieceByPieceOneInATurn) {
  queue().startDownloads({shop.buy("crown")});
  turn();
  turn();
  EXPECT_EQ(journal().size(), 2U);
  (void)turnUntilIdle();
  EXPECT_THAT(journal(), ElementsAre("crown active 0%", "crown active 25%", "crown active 50%",
                                     "crown active 75%", "crown finished 100%"));
}

TEST_F(Downloads, SeveralAreReportedTogether) {
  queue().startDownloads({shop.buy("crown"), shop.buy("cape")});
  (void)turnUntilIdle();
  EXPECT_THAT(journal(),
              ElementsAre("crown active 0%, cape active 0%", "crown active 25%, cape active 50%",
                          "crown active 50%, cape finished 100%", "crown active 75%",
                          "crown finished 100%"));
}

TEST_F(Downloads, LargeFileComesInPieces) {
  shop.host("gems", {{"film", std::string(1024 * 1024, 'f')}});
  queue().startDownloads({shop.buy("gems")});
  (void)turnUntilIdle();
  EXPECT_THAT(journal(), ElementsAre("gems active 0%", "gems active 25%", "gems active 50%",
                                     "gems active 75%", "gems finished 100%"));
}

TEST_F(Downloads, EmptyContentFinishesToo) {
  shop.host("gems", {});
  const auto download = shop.buy("gems");
  EXPECT_EQ(download->contentLength(), 0);
  queue().startDownloads({download});
  (void)turnUntilIdle();
  EXPECT_THAT(journal(), ElementsAre("gems active 0%", "gems finished 100%"));
  EXPECT_TRUE(std::filesystem::is_directory(tests::contentFolder(*download) + "/Contents"));
}

TEST_F(Downloads, EachRequestIsHeardOfInItsOrder) {
  const auto download = shop.buy("crown");
  queue().startDownloads({download});
  queue().pauseDownloads({download});
  queue().resumeDownloads({download});
  queue().cancelDownloads({download});
  (void)turnUntilIdle();
  EXPECT_THAT(journal(), ElementsAre("crown active 0%", "crown paused 0%", "crown active 0%",
                                     "crown cancelled 0%"));
}

TEST_F(Downloads, PausedOneKeepsItsProgressAndGoesOn) {
  const auto download = shop.buy("crown");
  queue().startDownloads({download});
  turn();
  turn();
  queue().pauseDownloads({download});
  (void)turnUntilIdle();
  const auto progress = download->progress();
  EXPECT_EQ(download->state(), SKDownloadState::paused);
  EXPECT_GT(progress, 0);
  EXPECT_LT(progress, 1);
  queue().resumeDownloads({download});
  turn();
  EXPECT_EQ(download->state(), SKDownloadState::active);
  EXPECT_EQ(download->progress(), progress);
  (void)turnUntilIdle();
  EXPECT_EQ(tests::filesIn(tests::contentFolder(*download) + "/Contents"),
            tests::filesIn(shop.hosted("crown")));
}

TEST_F(Downloads, PausingOneLeavesTheOthersGoing) {
  const auto crown = shop.buy("crown");
  const auto cape = shop.buy("cape");
  queue().startDownloads({crown, cape});
  queue().pauseDownloads({crown});
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe({crown, cape}), "crown paused 0%, cape finished 100%");
}

TEST_F(Downloads, CancelledOneCanBeStartedAgainFromNothing) {
  const auto download = shop.buy("crown");
  queue().startDownloads({download});
  turn();
  turn();
  queue().cancelDownloads({download});
  (void)turnUntilIdle();
  observer.journal->clear();
  queue().startDownloads({download});
  (void)turnUntilIdle();
  EXPECT_EQ(journal().at(0), "crown active 0%");
  EXPECT_EQ(journal().back(), "crown finished 100%");
  EXPECT_EQ(tests::filesIn(tests::contentFolder(*download) + "/Contents"),
            tests::filesIn(shop.hosted("crown")));
}

TEST_F(Downloads, ForeignOnesAndNoneAreIgnored) {
  (void)turnUntilIdle();
  for (const auto& downloads :
       {SKDownloads(), SKDownloads{nullptr}, SKDownloads{TQStoreKitLib::tests::aDownload("x")}}) {
    queue().startDownloads(downloads);
    queue().pauseDownloads(downloads);
    queue().resumeDownloads(downloads);
    queue().cancelDownloads(downloads);
  }
  EXPECT_EQ(Dispatch::MainLoop::drain(), 0U);
}

TEST_F(Downloads, ForeignOnesDoNotKeepTheOthersBack) {
  const auto download = shop.buy("crown");
  queue().startDownloads({nullptr, TQStoreKitLib::tests::aDownload("x"), download});
  (void)turnUntilIdle();
  EXPECT_EQ(download->state(), SKDownloadState::finished);
}

TEST_F(Downloads, ThoseOfAnotherStoreAreIgnored) {
  const auto earlier = shop.buy("crown");
  const tests::DownloadShop another;
  const auto later = another.buy("crown");
  queue().startDownloads({earlier});
  (void)turnUntilIdle();
  EXPECT_EQ(later->state(), SKDownloadState::waiting);
  EXPECT_FALSE(earlier->isEqual(*later));
}

TEST_F(Downloads, ThoseOfTwoTransactionsDiffer) {
  const auto first = shop.buy("crown");
  const auto second = shop.buy("crown");
  EXPECT_FALSE(first->isEqual(*second));
  queue().startDownloads({second});
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe({first, second}), "crown waiting 0%, crown finished 100%");
}

TEST_F(Downloads, WaitWhileNobodyObserves) {
  const auto download = shop.buy("crown");
  queue().startDownloads({download});
  turn();
  observer.stop();
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe({download}), "crown active 0%");
  observer.observe();
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe({download}), "crown finished 100%");
}

TEST_F(Downloads, RequestsWaitForAnObserverInTheirOrder) {
  const auto download = shop.buy("crown");
  observer.stop();
  queue().startDownloads({download});
  queue().pauseDownloads({download});
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe({download}), "crown waiting 0%");
  observer.observe();
  (void)turnUntilIdle();
  EXPECT_THAT(journal(), ElementsAre("crown active 0%", "crown paused 0%"));
}

TEST_F(Downloads, AllObserversHear) {
  const tests::DownloadObserver second;
  queue().startDownloads({shop.buy("crown")});
  (void)turnUntilIdle();
  EXPECT_THAT(*second.journal, SizeIs(5));
}

// Every state, brought about; and what each request makes of it.
struct StateCase {
  SKDownloadState state;
  const char* started;
  const char* paused;
  const char* resumed;
  const char* cancelled;
};

constexpr StateCase kStates[] = {
    {SKDownloadState::waiting, "crown active 0%", "", "", "crown cancelled 0%"},
    {SKDownloadState::active, "", "crown paused 0%", "", "crown cancelled 0%"},
    {SKDownloadState::paused, "", "", "crown active 0%", "crown cancelled 0%"},
    {SKDownloadState::finished, "", "", "", ""},
    {SKDownloadState::failed, "crown active 0%", "", "", ""},
    {SKDownloadState::cancelled, "crown active 0%", "", "", ""},
};

using Request = void (SKPaymentQueue::*)(const SKDownloads&);

class DownloadStates : public testing::TestWithParam<StateCase> {
 protected:
  tests::DownloadShop shop;
  tests::DownloadObserver observer;

  static SKPaymentQueue& queue() { return tests::DownloadShop::queue(); }

  [[nodiscard]] SKDownloadPtr downloadInState() {
    auto download = shop.buy("crown");
    const auto state = GetParam().state;
    if (state == SKDownloadState::failed) {
      shop.shop.session.failDownloads(Foundation::NSError("Net", 1));
    }
    // At one byte a second an active one stays where it is until the clock is moved.
    if (state == SKDownloadState::active || state == SKDownloadState::paused) {
      (void)shop.shop.session.setDownloadSpeed(1);
    }
    if (state == SKDownloadState::cancelled) queue().cancelDownloads({download});
    if (state != SKDownloadState::waiting && state != SKDownloadState::cancelled) {
      queue().startDownloads({download});
    }
    if (state == SKDownloadState::paused) queue().pauseDownloads({download});
    (void)turnUntilIdle();
    observer.journal->clear();
    return download;
  }

  // What is reported first after the request; empty when nothing is.
  std::string after(Request request) {
    const auto download = downloadInState();
    EXPECT_EQ(download->state(), GetParam().state);
    (queue().*request)({download});
    turn();
    return observer.journal->empty() ? "" : observer.journal->front();
  }
};

TEST_P(DownloadStates, Start) {
  EXPECT_EQ(after(&SKPaymentQueue::startDownloads), GetParam().started);
}
TEST_P(DownloadStates, Pause) {
  EXPECT_EQ(after(&SKPaymentQueue::pauseDownloads), GetParam().paused);
}
TEST_P(DownloadStates, Resume) {
  EXPECT_EQ(after(&SKPaymentQueue::resumeDownloads), GetParam().resumed);
}
TEST_P(DownloadStates, Cancel) {
  EXPECT_EQ(after(&SKPaymentQueue::cancelDownloads), GetParam().cancelled);
}

void PrintTo(const StateCase& tested, std::ostream* stream) {
  *stream << "state " << static_cast<int>(tested.state);
}

std::string nameOfState(const testing::TestParamInfo<StateCase>& tested) {
  static constexpr const char* kNames[] = {"Waiting",  "Active", "Paused",
                                           "Finished", "Failed", "Cancelled"};
  return kNames[static_cast<std::size_t>(tested.param.state)];
}

INSTANTIATE_TEST_SUITE_P(All, DownloadStates, testing::ValuesIn(kStates), nameOfState);

}  // namespace
}  // namespace StoreKit
