#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TQStoreKitLib/transactions/TQStoreKit.hpp"
#include "tests/fakes/DownloadShop.hpp"

// Hosted content, as an application gets it: through the library, from the embedded store.

namespace TQStoreKitLib {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using ::tests::turnUntilIdle;

class HostedDownloads : public testing::Test {
 protected:
  ::tests::DownloadShop shop;
  ::tests::Journal journal;
  std::optional<TQPurchaseDetails> bought;

  HostedDownloads() {
    TQStoreKit::setUpdatedDownloadsHandler([this](const StoreKit::SKDownloads& downloads) {
      journal.push_back(::tests::describe(downloads));
    });
  }
  ~HostedDownloads() override { TQStoreKit::setUpdatedDownloadsHandler(nullptr); }

  [[nodiscard]] StoreKit::SKDownloads buy(bool atomically = false) {
    TQStoreKit::purchaseProduct("crown", {.atomically = atomically},
                                [this](const TQPurchaseResult& result) {
                                  if (const auto* details = result.asSuccess()) bought = *details;
                                });
    (void)turnUntilIdle();
    return bought->transaction->downloads();
  }
};

TEST_F(HostedDownloads, ArriveAndAreGoneAfterTheFinish) {
  const auto downloads = buy();
  ASSERT_EQ(downloads.size(), 1U);

  TQStoreKit::start(downloads);
  (void)turnUntilIdle();

  EXPECT_THAT(journal, ElementsAre("crown active 0%", "crown active 25%", "crown active 50%",
                                   "crown active 75%", "crown finished 100%"));
  EXPECT_EQ(::tests::filesIn(::tests::contentFolder(*downloads[0]) + "/Contents"),
            ::tests::filesIn(shop.hosted("crown")));

  TQStoreKit::finishTransaction(*bought->transaction);
  (void)turnUntilIdle();

  EXPECT_EQ(downloads[0]->contentURL(), std::nullopt);
  EXPECT_THAT(shop.arrived(), IsEmpty());
}

TEST_F(HostedDownloads, ArePausedResumedAndCancelled) {
  const auto downloads = buy();
  TQStoreKit::start(downloads);
  TQStoreKit::pause(downloads);
  (void)turnUntilIdle();
  TQStoreKit::resume(downloads);
  TQStoreKit::cancel(downloads);
  (void)turnUntilIdle();

  EXPECT_THAT(journal, ElementsAre("crown active 0%", "crown paused 0%", "crown active 0%",
                                   "crown cancelled 0%"));
}

TEST_F(HostedDownloads, HandlerHearsTheError) {
  const auto downloads = buy();
  shop.shop.session.failDownloads(Foundation::NSError("Net", 7));

  TQStoreKit::start(downloads);
  (void)turnUntilIdle();

  EXPECT_EQ(journal.back(), "crown failed 50%");
  EXPECT_EQ(downloads[0]->error()->domain(), "Net");
}

TEST_F(HostedDownloads, OfATransactionThatTheLibraryFinishesCannotBeStarted) {
  const auto downloads = buy(true);

  TQStoreKit::start(downloads);
  (void)turnUntilIdle();

  EXPECT_THAT(journal, IsEmpty());
}

TEST_F(HostedDownloads, ComeAgainWithTheLaunchTimeCompletion) {
  (void)buy();
  StoreKit::SKDownloads again;
  TQStoreKit::completeTransactions({.atomically = false},
                                   [&](const std::vector<TQPurchase>& purchases) {
                                     again = purchases.at(0).transaction->downloads();
                                     TQStoreKit::start(again);
                                   });

  shop.shop.session.relaunch();
  (void)turnUntilIdle();

  EXPECT_EQ(journal.back(), "crown finished 100%");
  EXPECT_NE(again.at(0)->contentURL(), std::nullopt);
}

TEST_F(HostedDownloads, ProductsSayWhatIsHosted) {
  StoreKit::SKProductPtr crown;
  TQStoreKit::fetchProductsInfo(
      {"crown"}, [&](const TQProductsResponse& response) { crown = *response.valids().begin(); });
  (void)turnUntilIdle();

  EXPECT_TRUE(crown->isDownloadable());
  EXPECT_THAT(crown->downloadContentLengths(), ElementsAre(100));
  EXPECT_EQ(crown->downloadContentVersion(), "1.0");
}

}  // namespace
}  // namespace TQStoreKitLib
