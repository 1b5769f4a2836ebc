#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/embedded/sqlite/SqliteDatabase.hpp"
#include "platform/embedded/store/ledger/SqliteLedger.hpp"
#include "tests/fakes/CapturedError.hpp"
#include "tests/fakes/DownloadShop.hpp"

namespace StoreKit {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;
using tests::contentFolder;
using tests::turn;
using tests::turnUntilIdle;

class DownloadedContent : public testing::Test {
 protected:
  tests::DownloadShop shop;
  tests::DownloadObserver observer;
  SKPaymentTransactionPtr transaction = shop.shop.buy("crown");
  SKDownloadPtr crown = transaction->downloads().at(0);

  static SKPaymentQueue& queue() { return tests::DownloadShop::queue(); }

  void download() const {
    queue().startDownloads({crown});
    (void)turnUntilIdle();
  }
  void finish() const {
    queue().finishTransaction(transaction);
    (void)turnUntilIdle();
  }
};

TEST_F(DownloadedContent, IsTheDevelopersFilesInAFolderNamedContents) {
  download();
  const auto folder = contentFolder(*crown);
  EXPECT_THAT(folder, StartsWith(shop.caches() + "/"));
  EXPECT_EQ(tests::filesIn(folder + "/Contents"), tests::filesIn(shop.hosted("crown")));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1);
}

TEST_F(DownloadedContent, HasTheFoldersThatAreEmptyToo) {
  fs::create_directories(shop.hosted("crown") + "/nothing/here");
  download();
  EXPECT_TRUE(fs::is_directory(contentFolder(*crown) + "/Contents/nothing/here"));
}

TEST_F(DownloadedContent, MayHaveAnyNamesAndBytes) {
  const tests::Files odd = {{"a b%20ü\n", std::string("\0\xff", 2)}, {".hidden", ""}, {"-rf", "x"}};
  shop.host("gems", odd);
  const auto gems = shop.buy("gems");
  queue().startDownloads({gems});
  (void)turnUntilIdle();
  EXPECT_EQ(tests::filesIn(contentFolder(*gems) + "/Contents"), odd);
}

TEST_F(DownloadedContent, IsWhatIsHostedWhenTheDownloadBegins) {
  tests::writeAll(shop.hosted("crown"), {{"a", "longer than it was, by some"}, {"new", "n"}});
  download();
  EXPECT_EQ(tests::filesIn(contentFolder(*crown) + "/Contents"),
            tests::filesIn(shop.hosted("crown")));
  EXPECT_EQ(crown->contentLength(), 103);
}

TEST_F(DownloadedContent, HasNoPlaceBeforeItIsWhole) {
  queue().startDownloads({crown});
  for (int count = 0; count < 4; ++count) {
    turn();
    EXPECT_EQ(crown->contentURL(), std::nullopt);
  }
  EXPECT_THAT(shop.arrived(), Not(IsEmpty()));
}

TEST_F(DownloadedContent, OfACancelledDownloadGoesAway) {
  queue().startDownloads({crown});
  turn();
  turn();
  ASSERT_THAT(shop.arrived(), Not(IsEmpty()));
  queue().cancelDownloads({crown});
  (void)turnUntilIdle();
  EXPECT_THAT(shop.arrived(), IsEmpty());
}

TEST_F(DownloadedContent, IsGoneWhenTheTransactionIsFinished) {
  download();
  finish();
  EXPECT_EQ(crown->contentURL(), std::nullopt);
  EXPECT_THAT(shop.arrived(), IsEmpty());
  EXPECT_TRUE(fs::is_empty(shop.caches() + "/downloads"));
}

TEST_F(DownloadedContent, IsGoneWhenObserversHearOfTheRemoval) {
  download();
  std::optional<std::string> url = "not asked";
  observer.onRemoved = [&](const SKPaymentTransactions& removed) {
    url = removed.at(0)->downloads().at(0)->contentURL();
  };
  finish();
  EXPECT_EQ(url, std::nullopt);
}

TEST_F(DownloadedContent, StaysWhenAnotherTransactionIsFinished) {
  download();
  queue().finishTransaction(shop.shop.buy("crown"));
  (void)turnUntilIdle();
  EXPECT_THAT(shop.arrived(), SizeIs(4));
}

TEST_F(DownloadedContent, StaysWhenTheFinishIsRefused) {
  download();
  shop.shop.ledger->refusal = Foundation::NSError("Disk", 28);
  testing::internal::CaptureStderr();
  finish();
  (void)testing::internal::GetCapturedStderr();
  EXPECT_THAT(shop.arrived(), SizeIs(4));
  EXPECT_NE(crown->contentURL(), std::nullopt);
}

TEST_F(DownloadedContent, IsGoneWhenTheTransactionIsDeleted) {
  download();
  ASSERT_FALSE(shop.shop.session.clearTransactions());
  (void)turnUntilIdle();
  EXPECT_THAT(shop.arrived(), IsEmpty());
}

TEST_F(DownloadedContent, OfAFinishedTransactionCannotBeDownloaded) {
  finish();
  observer.journal->clear();
  download();
  EXPECT_THAT(*observer.journal, IsEmpty());
  EXPECT_EQ(crown->state(), SKDownloadState::waiting);
}

TEST_F(DownloadedContent, FinishCancelsADownloadUnderWay) {
  queue().startDownloads({crown});
  turn();
  turn();
  finish();
  EXPECT_THAT(*observer.journal,
              ElementsAre("crown active 0%", "crown active 25%", "crown active 50%",
                          "removed: crown purchased", "crown cancelled 50%"));
  EXPECT_THAT(shop.arrived(), IsEmpty());
}

TEST_F(DownloadedContent, FinishSaysNothingOfADownloadThatWaited) {
  finish();
  EXPECT_THAT(*observer.journal, ElementsAre("removed: crown purchased"));
}

TEST_F(DownloadedContent, StaysOverARelaunchAndTheDownloadWaitsAgain) {
  download();
  const auto before = crown->contentURL();
  shop.shop.session.relaunch();
  (void)turnUntilIdle();
  const auto again = queue().transactions().at(0)->downloads();
  EXPECT_EQ(tests::describe(again), "crown waiting 0%");
  EXPECT_TRUE(again.at(0)->isEqual(*crown));
  EXPECT_EQ(again.at(0)->hash(), crown->hash());
  EXPECT_TRUE(fs::exists(contentFolder(*crown)));
  finish();
  EXPECT_THAT(shop.arrived(), IsEmpty());
}

TEST_F(DownloadedContent, RelaunchGivesUpWhatIsUnderWay) {
  queue().startDownloads({crown});
  turn();
  turn();
  shop.shop.session.relaunch();
  (void)turnUntilIdle();
  EXPECT_THAT(shop.arrived(), IsEmpty());
  EXPECT_EQ(tests::describe(queue().transactions().at(0)->downloads()), "crown waiting 0%");
  EXPECT_EQ(tests::describe({crown}), "crown waiting 0%");
}

TEST_F(DownloadedContent, DownloadOfAnEarlierRunStandsForThatOfThisOne) {
  shop.shop.session.relaunch();
  (void)turnUntilIdle();
  download();
  EXPECT_EQ(tests::describe(queue().transactions().at(0)->downloads()), "crown finished 100%");
}

TEST_F(DownloadedContent, OfALedgerInMemoryEndsWithTheStore) {
  download();
  const StoreSession another(tests::shop());
  EXPECT_THAT(shop.arrived(), IsEmpty());
}

// A ledger file, which several programs may have open: another one is played by a ledger object of
// its own.
class DownloadsOnAFile : public testing::Test {
 protected:
  tests::TemporaryFolder folder;
  tests::DownloadObserver observer;

  void SetUp() override {
    ::setenv("XDG_CACHE_HOME", folder.file("caches").c_str(), 1);
    tests::writeAll(folder.file("crown"), {{"a", "aaa"}, {"b", "bbb"}});
    open();
    ASSERT_FALSE(session->setHostedContent("crown", folder.file("crown")));
    queue().addPayment(SKPayment({.productIdentifier = "crown"}));
    (void)turnUntilIdle();
  }

  void TearDown() override { const StoreSession elsewhere(tests::shop()); }

  void open() {
    session = std::make_unique<StoreSession>(tests::shop(), StoreSources(),
                                             SqliteLedger::open(folder.file("ledger")).ledger);
    (void)turnUntilIdle();
  }

  static SKPaymentQueue& queue() { return tests::OpenShop::queue(); }

  [[nodiscard]] static SKDownloadPtr only() {
    return queue().transactions().at(0)->downloads().at(0);
  }

  [[nodiscard]] SKDownloadPtr downloaded() const {
    auto download = only();
    queue().startDownloads({download});
    (void)turnUntilIdle();
    return download;
  }

  void finishElsewhere(bool deletes = false) const {
    const auto ledger = SqliteLedger::open(folder.file("ledger")).ledger;
    auto entries = ledger->unfinished();
    for (auto& entry : entries) {
      entry.finished = true;
      entry.deleted = deletes;
    }
    ASSERT_FALSE(ledger->update(entries, Ledger::Durability::killedProcess));
  }

  std::unique_ptr<StoreSession> session;
};

TEST_F(DownloadsOnAFile, ArriveInTheUsersCaches) {
  EXPECT_THAT(contentFolder(*downloaded()),
              StartsWith(folder.file("caches") + "/tqstore/downloads/ledger-"));
}

TEST_F(DownloadsOnAFile, AnotherProgramKnowsWhatIsHosted) {
  open();  // with nothing set in this opening
  EXPECT_EQ(tests::describe({only()}), "crown waiting 0%");
  EXPECT_EQ(only()->contentLength(), 6);
  EXPECT_EQ(session->setting("hostedContent.crown"), folder.file("crown"));
}

TEST_F(DownloadsOnAFile, ContentStaysForTheNextProgram) {
  const auto download = downloaded();
  open();
  EXPECT_THAT(tests::filesIn(contentFolder(*download)), SizeIs(2));
}

TEST_F(DownloadsOnAFile, TwoProgramsDownloadToFoldersOfTheirOwn) {
  const auto first = downloaded();
  open();
  const auto second = downloaded();
  EXPECT_NE(first->contentURL(), second->contentURL());
  EXPECT_EQ(tests::filesIn(contentFolder(*first)), tests::filesIn(contentFolder(*second)));
}

TEST_F(DownloadsOnAFile, ContentIsGoneWhenAnotherProgramFinishes) {
  const auto download = downloaded();
  const auto place = contentFolder(*download);
  finishElsewhere();
  EmbeddedStore::current().queue().absorbChanges();
  EXPECT_FALSE(fs::exists(place));
  EXPECT_EQ(download->contentURL(), std::nullopt);
}

TEST_F(DownloadsOnAFile, FinishRemovesWhatAnotherProgramDownloaded) {
  const auto place = contentFolder(*downloaded());
  open();
  queue().finishTransaction(queue().transactions().at(0));
  (void)turnUntilIdle();
  EXPECT_FALSE(fs::exists(place));
}

TEST_F(DownloadsOnAFile, StartRemovesWhatWasFinishedMeanwhile) {
  const auto place = contentFolder(*downloaded());
  {
    const StoreSession somewhereElse(tests::shop());
  }
  finishElsewhere();
  ASSERT_TRUE(fs::exists(place));
  open();
  EXPECT_FALSE(fs::exists(place));
}

TEST_F(DownloadsOnAFile, StartRemovesWhatWasDeletedMeanwhile) {
  const auto place = contentFolder(*downloaded());
  {
    const StoreSession somewhereElse(tests::shop());
  }
  finishElsewhere(true);
  ASSERT_TRUE(fs::exists(place));
  open();
  EXPECT_FALSE(fs::exists(place));
}

TEST_F(DownloadsOnAFile, StartKeepsWhatTheLedgerCannotTellOf) {
  const auto place = contentFolder(*downloaded());
  {
    const StoreSession somewhereElse(tests::shop());
  }
  auto ledger = SqliteLedger::open(folder.file("ledger")).ledger;
  Foundation::detail::SqliteDatabase(folder.file("ledger"), SQLITE_OPEN_READWRITE)
      .execute("UPDATE entry SET error = '{'");  // cannot be understood
  const tests::CapturedError errors;
  const StoreSession here(tests::shop(), StoreSources(), std::move(ledger));
  EXPECT_TRUE(fs::exists(place));
}

TEST_F(DownloadsOnAFile, StartLeavesAloneWhatIsNoTransactions) {
  const auto place = fs::path(contentFolder(*downloaded())).parent_path().parent_path();
  const auto others = {"notes", "0", "-1", "1x"};
  for (const auto* other : others) tests::writeAll((place / other).string(), {{"mine", "m"}});
  open();
  for (const auto* other : others) EXPECT_TRUE(fs::exists(place / other / "mine")) << other;
}

TEST_F(DownloadsOnAFile, ContentOfAnotherLedgerIsLeftAlone) {
  const auto place = contentFolder(*downloaded());
  const StoreSession another(tests::shop(), StoreSources(),
                             SqliteLedger::open(folder.file("other.ledger")).ledger);
  (void)turnUntilIdle();
  EXPECT_TRUE(fs::exists(place));
}

}  // namespace
}  // namespace StoreKit
