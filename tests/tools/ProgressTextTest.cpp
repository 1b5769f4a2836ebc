#include "tools/tqstore/ProgressText.hpp"

#include <gtest/gtest.h>

namespace tqstore {
namespace {

using namespace std::chrono_literals;

TEST(ProgressText, ShowsPartBytesSpeedAndTimeLeft) {
  const Progress progress{
      .title = "maps.zip", .done = 25'000'000, .total = 100'000'000, .speed = 5'000'000};

  EXPECT_EQ(progressText(progress, 79),
            "maps.zip   25%  [====>              ]  25.0 MB of 100.0 MB  5.0 MB/s  0:15 left");
}

TEST(ProgressText, ShowsBytesSoFarWhenNobodyKnowsHowManyWillCome) {
  const Progress progress{.title = "maps.zip", .done = 2'500'000, .total = -1, .speed = 1500};

  EXPECT_EQ(progressText(progress, 79), "maps.zip  2.5 MB  1.5 kB/s");
}

TEST(ProgressText, SaysNothingOfASpeedThatIsNotKnown) {
  EXPECT_EQ(progressText({.title = "a", .done = 0, .total = -1}, 79), "a  0 bytes");
  EXPECT_EQ(progressText({.title = "a", .done = 0, .total = 10}, 30),
            "a    0%  0 bytes of 10 bytes");
}

TEST(ProgressText, IsFullAtTheEnd) {
  const auto text = progressText({.title = "a", .done = 10, .total = 10, .speed = 1}, 120);

  EXPECT_NE(text.find("100%  [======================================]"), std::string::npos);
  EXPECT_NE(text.find("0:00 left"), std::string::npos);
}

TEST(ProgressText, OfNothingAtAllIsDone) {
  EXPECT_NE(progressText({.title = "a", .done = 0, .total = 0}, 79).find("100%"),
            std::string::npos);
}

TEST(ProgressText, NeverPassesAHundredPercent) {
  EXPECT_NE(progressText({.title = "a", .done = 20, .total = 10}, 79).find("100%"),
            std::string::npos);
}

TEST(ProgressText, FitsIntoEveryWidth) {
  const Progress progress{.title = "maps.zip", .done = 1'000, .total = 100'000'000, .speed = 1};
  for (int width = 0; width < 120; ++width) {
    EXPECT_LE(progressText(progress, width).size(), static_cast<std::size_t>(width));
    EXPECT_LE(progressText({.title = "maps.zip", .done = 1}, width).size(),
              static_cast<std::size_t>(width));
  }
}

TEST(ProgressText, CountsBytesInPowersOfAThousand) {
  EXPECT_EQ(byteText(0), "0 bytes");
  EXPECT_EQ(byteText(1), "1 byte");
  EXPECT_EQ(byteText(999), "999 bytes");
  EXPECT_EQ(byteText(1000), "1.0 kB");
  EXPECT_EQ(byteText(999'949), "999.9 kB");
  EXPECT_EQ(byteText(999'950), "1.0 MB");
  EXPECT_EQ(byteText(12'345'678'901), "12.3 GB");
  EXPECT_EQ(byteText(9'000'000'000'000'000), "9000.0 TB");
}

TEST(ProgressText, ShowsHoursOnlyWhenThereAreSome) {
  EXPECT_EQ(timeText(0s), "0:00");
  EXPECT_EQ(timeText(69s), "1:09");
  EXPECT_EQ(timeText(3600s + 125s), "1:02:05");
}

}  // namespace
}  // namespace tqstore
