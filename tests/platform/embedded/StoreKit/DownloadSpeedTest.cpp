#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakes/DownloadShop.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::turnUntilIdle;

// Ten bytes a second: the crown takes ten seconds.
class DownloadSpeed : public testing::Test {
 protected:
  tests::DownloadShop shop;
  tests::DownloadObserver observer;
  SKDownloadPtr crown = shop.buy("crown");

  DownloadSpeed() {
    (void)shop.shop.session.setDownloadSpeed(10);
    queue().startDownloads({crown});
    (void)turnUntilIdle();
  }

  static SKPaymentQueue& queue() { return tests::DownloadShop::queue(); }

  [[nodiscard]] double secondsLeft() const { return crown->timeRemaining().value().count(); }
};

TEST_F(DownloadSpeed, NothingComesWhileTheClockStands) {
  (void)turnUntilIdle();
  EXPECT_THAT(*observer.journal, ElementsAre("crown active 0%"));
}

TEST_F(DownloadSpeed, BytesComeByTheStoresClock) {
  shop.moveClock(1);
  EXPECT_EQ(tests::describe({crown}), "crown active 10%");
  shop.moveClock(2.5);
  EXPECT_EQ(tests::describe({crown}), "crown active 35%");
}

TEST_F(DownloadSpeed, EndsExactlyInItsTime) {
  for (int step = 0; step < 99; ++step) shop.moveClock(0.1);
  EXPECT_EQ(tests::describe({crown}), "crown active 99%");
  shop.moveClock(0.1);
  EXPECT_EQ(tests::describe({crown}), "crown finished 100%");
}

TEST_F(DownloadSpeed, ALongLeapEndsIt) {
  shop.moveClock(1e9);
  EXPECT_EQ(tests::describe({crown}), "crown finished 100%");
  EXPECT_EQ(tests::filesIn(tests::contentFolder(*crown) + "/Contents"),
            tests::filesIn(shop.hosted("crown")));
}

TEST_F(DownloadSpeed, AClockThatGoesBackTakesNothingAway) {
  shop.moveClock(5);
  shop.moveClock(-4);
  EXPECT_EQ(tests::describe({crown}), "crown active 50%");
  shop.moveClock(5);
  EXPECT_EQ(tests::describe({crown}), "crown active 60%");
}

TEST_F(DownloadSpeed, AClockThatGoesBackBeforeTheNextPieceTakesNothingAway) {
  shop.moveClock(5);
  *shop.clock.moment += 1;
  shop.shop.session.clockDidChange();
  *shop.clock.moment -= 5;
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe({crown}), "crown active 50%");
}

TEST_F(DownloadSpeed, TimeRemainingIsThatOfTheBytesToCome) {
  shop.moveClock(4);
  EXPECT_DOUBLE_EQ(secondsLeft(), 6);
}

TEST_F(DownloadSpeed, TimeRemainingIsUnknownWhilePausedAndZeroInTheEnd) {
  shop.moveClock(4);
  queue().pauseDownloads({crown});
  (void)turnUntilIdle();
  EXPECT_EQ(crown->timeRemaining(), std::nullopt);
  queue().resumeDownloads({crown});
  (void)turnUntilIdle();
  shop.moveClock(6);
  EXPECT_DOUBLE_EQ(secondsLeft(), 0);
}

TEST_F(DownloadSpeed, TimeOfAPauseDoesNotCount) {
  shop.moveClock(4);
  queue().pauseDownloads({crown});
  (void)turnUntilIdle();
  shop.moveClock(100);
  EXPECT_EQ(tests::describe({crown}), "crown paused 40%");
  queue().resumeDownloads({crown});
  (void)turnUntilIdle();
  shop.moveClock(1);
  EXPECT_EQ(tests::describe({crown}), "crown active 50%");
}

TEST_F(DownloadSpeed, AnotherSpeedCountsFromThenOn) {
  shop.moveClock(1);
  (void)shop.shop.session.setDownloadSpeed(20);
  (void)turnUntilIdle();
  shop.moveClock(1);
  EXPECT_EQ(tests::describe({crown}), "crown active 30%");
}

TEST_F(DownloadSpeed, WithoutAnyItGoesOnWithoutTheClock) {
  shop.moveClock(1);
  (void)shop.shop.session.setDownloadSpeed(0);
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe({crown}), "crown finished 100%");
}

TEST_F(DownloadSpeed, ComesWithTheSettingsOfTheLedger) {
  EXPECT_EQ(shop.shop.session.setting("downloadSpeed"), "10");
  EXPECT_EQ(shop.shop.session.downloadSpeed(), 10);
  shop.shop.session.resetToDefaultState();
  EXPECT_EQ(shop.shop.session.downloadSpeed(), 0);
}

TEST_F(DownloadSpeed, BelowZeroIsRefused) {
  EXPECT_TRUE(shop.shop.session.setDownloadSpeed(-1).has_value());
  EXPECT_TRUE(shop.shop.session.set("downloadSpeed", "fast").has_value());
  EXPECT_EQ(shop.shop.session.downloadSpeed(), 10);
}

TEST_F(DownloadSpeed, OfTwoIsThatOfEach) {
  const auto cape = shop.buy("cape");
  queue().startDownloads({cape});
  (void)turnUntilIdle();
  shop.moveClock(1);
  EXPECT_EQ(tests::describe({crown, cape}), "crown active 10%, cape active 50%");
}

TEST_F(DownloadSpeed, ReportsOnlyWhatHasChanged) {
  observer.journal->clear();
  shop.moveClock(0.05);
  EXPECT_THAT(*observer.journal, IsEmpty());
}

TEST(DownloadTime, IsGuessedFromThePaceWhenThereIsNoSpeed) {
  tests::DownloadShop shop;
  const tests::DownloadObserver observer;
  const auto crown = shop.buy("crown");
  tests::DownloadShop::queue().startDownloads({crown});
  tests::turn();
  EXPECT_EQ(crown->timeRemaining(), std::nullopt);
  *shop.clock.moment += 3;
  tests::turn();
  EXPECT_EQ(tests::describe({crown}), "crown active 25%");
  EXPECT_DOUBLE_EQ(crown->timeRemaining().value().count(), 9);
}

}  // namespace
}  // namespace StoreKit
