#include "platform/embedded/store/downloads/DownloadPlace.hpp"

#include <gtest/gtest.h>

#include "tests/fakes/TemporaryFolder.hpp"
#include "tests/platform/embedded/store/ledger/ChildProcess.hpp"

namespace StoreKit {
namespace {

// A place with the content of the first transaction.
class DownloadPlaceInCaches : public testing::Test {
 protected:
  DownloadPlace placeOf(const std::string& ledger) const {
    DownloadPlace place(ledger, folder.path());
    std::filesystem::create_directories(place.folderOf(1));
    return place;
  }
  static bool hasContent(const DownloadPlace& place) {
    return std::filesystem::exists(place.folderOf(1));
  }

  tests::TemporaryFolder folder;
};

TEST_F(DownloadPlaceInCaches, EndsWithALedgerInMemory) {
  const auto place = placeOf("");
  place.end();
  EXPECT_FALSE(hasContent(place));
}

TEST_F(DownloadPlaceInCaches, OutlivesALedgerInAFile) {
  const auto place = placeOf(folder.file("shop.ledger"));
  place.end();
  EXPECT_TRUE(hasContent(place));
}

TEST_F(DownloadPlaceInCaches, OfALedgerInMemoryIsNotEndedByAForkedChild) {
  const auto place = placeOf("");
  EXPECT_EQ(tests::inChild([&] {
              place.end();
              return 0;
            }),
            0);
  EXPECT_TRUE(hasContent(place));
}

TEST_F(DownloadPlaceInCaches, IsAnotherForEachLedgerInMemory) {
  EXPECT_NE(placeOf("").folderOf(1), placeOf("").folderOf(1));
}

TEST_F(DownloadPlaceInCaches, IsTheSameForOneFile) {
  const auto ledger = folder.file("shop.ledger");
  EXPECT_EQ(placeOf(ledger).folderOf(1), placeOf(ledger).folderOf(1));
}

}  // namespace
}  // namespace StoreKit
