#include "platform/embedded/store/downloads/HostedContent.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/embedded/store/StoreSettings.hpp"
#include "tests/fakes/DownloadShop.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using tests::turnUntilIdle;

class HostedContentTest : public testing::Test {
 protected:
  tests::TemporaryFolder folder;
  tests::OpenShop shop;

  HostedContentTest() {
    tests::writeAll(folder.file("crown"), {{"a", "12345"}, {"more/b", "678"}});
  }

  [[nodiscard]] const SKProduct& product(const char* identifier) const {
    return *shop.session.catalogue().find(identifier)->product;
  }

  void expectRefusal(const StoreSession::Failure& refusal, const std::string& text) const {
    ASSERT_TRUE(refusal.has_value());
    EXPECT_EQ(refusal->domain(), kStoreSessionErrorDomain);
    EXPECT_EQ(refusal->code(), static_cast<std::int64_t>(StoreSessionError::invalidSetting));
    EXPECT_THAT(refusal->localizedDescription(), HasSubstr(text));
    EXPECT_THAT(shop.session.settings().hostedContent, IsEmpty());
  }
};

TEST_F(HostedContentTest, MakesTheProductDownloadable) {
  ASSERT_FALSE(shop.session.setHostedContent("crown", folder.file("crown"), "2.10"));
  EXPECT_TRUE(product("crown").isDownloadable());
  EXPECT_THAT(product("crown").downloadContentLengths(), ElementsAre(8));
  EXPECT_EQ(product("crown").downloadContentVersion(), "2.10");
  EXPECT_FALSE(product("cape").isDownloadable());
  EXPECT_THAT(product("cape").downloadContentLengths(), IsEmpty());
  EXPECT_EQ(product("cape").downloadContentVersion(), "");
}

TEST_F(HostedContentTest, VersionIsThatOfTheDownload) {
  const tests::DownloadObserver observer;
  ASSERT_FALSE(shop.session.setHostedContent("crown", folder.file("crown"), "2.10"));
  EXPECT_EQ(shop.buy("crown")->downloads().at(0)->contentVersion(), "2.10");
}

TEST_F(HostedContentTest, EmptyFolderNameHostsNothingAnyMore) {
  ASSERT_FALSE(shop.session.setHostedContent("crown", folder.file("crown")));
  ASSERT_FALSE(shop.session.setHostedContent("crown", ""));
  EXPECT_FALSE(product("crown").isDownloadable());
  EXPECT_THAT(shop.session.settings().hostedContent, IsEmpty());
}

TEST_F(HostedContentTest, ResetTakesItBack) {
  ASSERT_FALSE(shop.session.setHostedContent("crown", folder.file("crown")));
  shop.session.resetToDefaultState();
  EXPECT_FALSE(product("crown").isDownloadable());
}

TEST_F(HostedContentTest, IsTwoSettingsByName) {
  ASSERT_FALSE(shop.session.set("hostedContent.crown", folder.file("crown")));
  ASSERT_FALSE(shop.session.set("hostedContentVersion.crown", "3"));
  EXPECT_EQ(shop.session.setting("hostedContent.crown"), folder.file("crown"));
  EXPECT_EQ(shop.session.setting("hostedContentVersion.crown"), "3");
  EXPECT_EQ(product("crown").downloadContentVersion(), "3");
  EXPECT_THAT(hostedContentSettings(shop.session.settings().hostedContent),
              ElementsAre("hostedContent.crown", "hostedContentVersion.crown"));
}

TEST_F(HostedContentTest, OneSettingIsTakenBackAlone) {
  ASSERT_FALSE(shop.session.setHostedContent("crown", folder.file("crown"), "3"));
  ASSERT_FALSE(EmbeddedStore::current().set("hostedContentVersion.crown", std::nullopt));
  EXPECT_EQ(product("crown").downloadContentVersion(), "1.0");
  ASSERT_FALSE(EmbeddedStore::current().set("hostedContent.crown", std::nullopt));
  EXPECT_FALSE(product("crown").isDownloadable());
}

TEST_F(HostedContentTest, IsNoneOfTheNamesThatEverySettingIsListedUnder) {
  for (const auto name : settingNames()) EXPECT_FALSE(isHostedContentSetting(name)) << name;
}

TEST_F(HostedContentTest, ProductsMayHavePointsInTheirNames) {
  auto configuration = tests::shop();
  configuration.products.push_back(tests::product("com.x.song", ProductType::nonConsumable));
  StoreSession session(configuration);
  ASSERT_FALSE(session.setHostedContent("com.x.song", folder.file("crown")));
  EXPECT_TRUE(session.catalogue().find("com.x.song")->product->isDownloadable());
}

TEST_F(HostedContentTest, RelativeFolderIsTakenFromTheCurrentOne) {
  std::filesystem::current_path(folder.path());
  ASSERT_FALSE(shop.session.set("hostedContent.crown", "./crown/"));
  std::filesystem::current_path("/");
  EXPECT_EQ(shop.session.setting("hostedContent.crown"), folder.file("crown"));
  EXPECT_EQ(EmbeddedStore::current().ledger().settings().at("hostedContent.crown"),
            folder.file("crown"));
}

TEST_F(HostedContentTest, FolderBehindALinkIsTheOneThatTheSystemFinds) {
  std::filesystem::create_directories(folder.file("far/away"));
  tests::writeAll(folder.file("far/song"), {{"a", "1"}});
  tests::writeAll(folder.file("song"), {{"b", "22"}});
  std::filesystem::create_directory_symlink(folder.file("far/away"), folder.file("link"));
  ASSERT_FALSE(shop.session.setHostedContent("crown", folder.file("link/../song")));
  EXPECT_THAT(product("crown").downloadContentLengths(), ElementsAre(1));
}

TEST_F(HostedContentTest, OfAProductThatIsNotSoldAnyMoreCanBeTakenBack) {
  ASSERT_FALSE(shop.session.setHostedContent("crown", folder.file("crown"), "2"));
  const auto settings = EmbeddedStore::current().ledger().settings();
  auto ledger = std::make_unique<MemoryLedger>();
  for (const auto& [name, value] : settings) ASSERT_FALSE(ledger->set(name, value));
  StoreSession session(StoreConfiguration(), {}, std::move(ledger));
  EXPECT_FALSE(session.set("hostedContent.crown", ""));
  EXPECT_FALSE(session.set("hostedContentVersion.crown", ""));
  EXPECT_THAT(session.settings().hostedContent, IsEmpty());
}

TEST_F(HostedContentTest, FolderThatIsMissingIsRefused) {
  expectRefusal(shop.session.setHostedContent("crown", folder.file("none")),
                "hostedContent.crown is a folder, not \"" + folder.file("none") + "\"");
}

TEST_F(HostedContentTest, FileIsRefused) {
  expectRefusal(shop.session.setHostedContent("crown", folder.file("crown/a")), "is a folder");
}

TEST_F(HostedContentTest, ProductThatIsNotSoldIsRefused) {
  expectRefusal(shop.session.setHostedContent("tiara", folder.file("crown")),
                "nothing is sold as tiara");
  expectRefusal(shop.session.setHostedContent("", folder.file("crown")), "is no setting");
}

TEST_F(HostedContentTest, VersionThatIsNoneIsRefusedAndChangesNothing) {
  for (const char* version : {"1.", ".1", "1..2", "v1", "1.0 ", "-1", "1,0"}) {
    expectRefusal(shop.session.setHostedContent("crown", folder.file("crown"), version),
                  "hostedContentVersion.crown is integers with points between them");
  }
}

TEST_F(HostedContentTest, RefusedFolderLeavesTheVersionAsItWas) {
  ASSERT_FALSE(shop.session.setHostedContent("crown", folder.file("crown"), "2"));
  EXPECT_TRUE(shop.session.setHostedContent("crown", folder.file("none"), "3").has_value());
  EXPECT_EQ(shop.session.setting("hostedContentVersion.crown"), "2");
  EXPECT_EQ(shop.session.setting("hostedContent.crown"), folder.file("crown"));
}

TEST_F(HostedContentTest, LedgerThatRefusesChangesNothing) {
  shop.ledger->refusal = Foundation::NSError("Disk", 28);
  const auto refusal = shop.session.setHostedContent("crown", folder.file("crown"));
  ASSERT_TRUE(refusal.has_value());
  EXPECT_EQ(refusal->domain(), "Disk");
  EXPECT_FALSE(product("crown").isDownloadable());
}

TEST_F(HostedContentTest, FolderThatWasRemovedSinceIsStillHostedWithoutBytes) {
  ASSERT_FALSE(shop.session.setHostedContent("crown", folder.file("crown")));
  std::filesystem::remove_all(folder.file("crown"));
  ASSERT_FALSE(shop.session.setLocale("de_DE"));
  EXPECT_TRUE(product("crown").isDownloadable());
  EXPECT_THAT(product("crown").downloadContentLengths(), ElementsAre(0));
}

TEST_F(HostedContentTest, TransactionThatIsInTheQueueGetsItAtTheNextStart) {
  const tests::DownloadObserver observer;
  shop.buy("crown");
  ASSERT_FALSE(shop.session.setHostedContent("crown", folder.file("crown")));
  EXPECT_THAT(tests::OpenShop::queue().transactions().at(0)->downloads(), IsEmpty());
  shop.session.relaunch();
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe(tests::OpenShop::queue().transactions().at(0)->downloads()),
            "crown waiting 0%");
}

TEST_F(HostedContentTest, DownloadKeepsTheFolderThatItCameWith) {
  const tests::DownloadObserver observer;
  ASSERT_FALSE(shop.session.setHostedContent("crown", folder.file("crown")));
  const auto download = shop.buy("crown")->downloads().at(0);
  shop.session.setDownloadsFolder(folder.file("caches"));
  ASSERT_FALSE(shop.session.setHostedContent("crown", ""));
  tests::OpenShop::queue().startDownloads({download});
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe({download}), "crown finished 100%");
}

}  // namespace
}  // namespace StoreKit
