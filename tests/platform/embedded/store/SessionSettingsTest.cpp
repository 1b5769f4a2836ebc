// Settings of a session: what overrides the configuration, for how long, and for whom.

#include "platform/embedded/store/EmbeddedStore.hpp"
#include "tests/fakes/CapturedError.hpp"
#include "tests/fakes/ObservedShop.hpp"
#include "tests/platform/embedded/store/ledger/LedgerInFolder.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using tests::OpenShop;
using tests::outcome;
using tests::turnUntilIdle;

// A configuration in which nothing is as it is by default.
StoreConfiguration unusual() {
  auto configuration = tests::shop();
  configuration.settings = {.locale = "de_DE",
                            .storefront = "DEU",
                            .timeRate = 13,
                            .askToBuyEnabled = true,
                            .interruptedPurchasesEnabled = true,
                            .billingRetryOnRenewalEnabled = true,
                            .billingGracePeriodEnabled = true,
                            .disableDialogs = true,
                            .failTransactionsEnabled = true,
                            .failureError = 12};
  return configuration;
}

TEST(SessionSettings, BeginWithWhatTheConfigurationSays) {
  const StoreSession session(unusual());
  EXPECT_EQ(session.locale(), "de_DE");
  EXPECT_EQ(session.storefront(), "DEU");
  EXPECT_EQ(session.timeRate(), 13);
  EXPECT_TRUE(session.askToBuyEnabled());
  EXPECT_TRUE(session.interruptedPurchasesEnabled());
  EXPECT_TRUE(session.billingRetryOnRenewalEnabled());
  EXPECT_TRUE(session.billingGracePeriodEnabled());
  EXPECT_TRUE(session.disableDialogs());
  EXPECT_TRUE(session.failTransactionsEnabled());
  EXPECT_EQ(session.failureError(), SKError::Code::invalidSignature);
  EXPECT_TRUE(session.canMakePayments());
  EXPECT_EQ(session.answerDelay(), 0);
}

TEST(SessionSettings, AreChangedByTheirProperties) {
  StoreSession session(unusual());
  session.setDisableDialogs(false);
  session.setAskToBuyEnabled(false);
  session.setInterruptedPurchasesEnabled(false);
  session.setFailTransactionsEnabled(false);
  session.setFailureError(SKError::Code::missingOfferParams);
  session.setBillingRetryOnRenewalEnabled(false);
  session.setBillingGracePeriodEnabled(false);
  session.setCanMakePayments(false);
  EXPECT_EQ(outcome(session.setTimeRate(1002)), tests::kDone);
  EXPECT_EQ(outcome(session.setLocale("fr")), tests::kDone);
  EXPECT_EQ(outcome(session.setStorefront("FRA")), tests::kDone);
  EXPECT_EQ(outcome(session.setAnswerDelay(1.25)), tests::kDone);
  EXPECT_FALSE(session.disableDialogs());
  EXPECT_FALSE(session.askToBuyEnabled());
  EXPECT_FALSE(session.interruptedPurchasesEnabled());
  EXPECT_FALSE(session.failTransactionsEnabled());
  EXPECT_EQ(session.failureError(), SKError::Code::missingOfferParams);
  EXPECT_FALSE(session.billingRetryOnRenewalEnabled());
  EXPECT_FALSE(session.billingGracePeriodEnabled());
  EXPECT_FALSE(session.canMakePayments());
  EXPECT_EQ(session.timeRate(), 1002);
  EXPECT_EQ(session.locale(), "fr");
  EXPECT_EQ(session.storefront(), "FRA");
  EXPECT_EQ(session.answerDelay(), 1.25);
}

TEST(SessionSettings, GoBackToTheConfigurationWithAReset) {
  StoreSession session(unusual());
  session.setAskToBuyEnabled(false);
  session.setCanMakePayments(false);
  (void)session.setStorefront("FRA");
  (void)session.setTimeRate(0);
  (void)session.setAnswerDelay(5);
  session.resetToDefaultState();
  EXPECT_TRUE(session.askToBuyEnabled());
  EXPECT_TRUE(session.canMakePayments());
  EXPECT_EQ(session.storefront(), "DEU");
  EXPECT_EQ(session.timeRate(), 13);
  EXPECT_EQ(session.answerDelay(), 0);
}

TEST(SessionSettings, AreTextByTheirNames) {
  StoreSession session(tests::shop());
  EXPECT_EQ(outcome(session.set("timeRate", "13")), tests::kDone);
  EXPECT_EQ(session.timeRate(), 13);
  EXPECT_EQ(session.setting("timeRate"), "13");
  EXPECT_EQ(session.setting("nothing"), std::nullopt);
}

TEST(SessionSettings, WithABadNameOrValueAreAnErrorThatSaysWhy) {
  StoreSession session(tests::shop());
  const auto badName = session.set("nothing", "true");
  EXPECT_EQ(outcome(badName), tests::kInvalidSetting);
  EXPECT_EQ(badName->localizedDescription(), "nothing is no setting");
  const auto badValue = session.set("askToBuyEnabled", "maybe");
  EXPECT_EQ(outcome(badValue), tests::kInvalidSetting);
  EXPECT_EQ(badValue->localizedDescription(),
            "askToBuyEnabled is \"true\" or \"false\", not \"maybe\"");
  EXPECT_EQ(outcome(session.setTimeRate(14)), tests::kInvalidSetting);
  EXPECT_EQ(outcome(session.setLocale("")), tests::kInvalidSetting);
}

using SessionSettingsInAShop = tests::ObservedShop<OpenShop>;

TEST_F(SessionSettingsInAShop, LeaveTheTransactionsAlone) {
  shop.own("crown");
  shop.session.setAskToBuyEnabled(true);
  shop.session.resetToDefaultState();
  EXPECT_THAT(tests::books(shop.session), ElementsAre("1 crown purchased finished"));
}

TEST_F(SessionSettingsInAShop, OutliveARelaunch) {
  shop.session.setAskToBuyEnabled(true);
  shop.session.relaunch();
  (void)turnUntilIdle();
  EXPECT_TRUE(shop.session.askToBuyEnabled());
}

TEST_F(SessionSettingsInAShop, ThatTheLedgerRefusesStayAndSaySo) {
  shop.ledger->refusal = Foundation::NSError::withDescription("disk", 28, "No space left.");
  tests::CapturedError error;
  shop.session.setAskToBuyEnabled(true);
  shop.session.setFailureError(SKError::Code::clientInvalid);
  shop.session.resetToDefaultState();
  EXPECT_EQ(error.text(),
            "A setting stays as it is: No space left.\n"
            "A setting stays as it is: No space left.\n"
            "The settings stay as they are: No space left.\n");
  EXPECT_FALSE(shop.session.askToBuyEnabled());
}

// The settings in a ledger file, and another program that sets them.
class SharedSettings : public tests::LedgerInFolder {
 protected:
  std::unique_ptr<SqliteLedger> other = tests::openLedger(path);
  tests::JournalingObserver observer;
  std::optional<StoreSession> session;

  ~SharedSettings() override {
    session.emplace(tests::shop());  // lets go of the file
    (void)turnUntilIdle();
  }

  void launch(StoreConfiguration configuration = tests::shop()) {
    session.emplace(std::move(configuration), tests::countingSources(), tests::openLedger(path));
    observer.observe();
    (void)turnUntilIdle();
  }
  // As the ledger's watch does.
  static void absorb() {
    EmbeddedStore::current().queue().absorbChanges();
    (void)turnUntilIdle();
  }
};

TEST_F(SharedSettings, LastFromRunToRun) {
  launch();
  session->setAskToBuyEnabled(true);
  (void)session->setStorefront("BRA");
  launch();
  EXPECT_TRUE(session->askToBuyEnabled());
  EXPECT_EQ(session->storefront(), "BRA");
  EXPECT_EQ(session->catalogue().find("gems")->product->priceLocale().identifier(),
            "en_US@currency=BRL");
}

TEST_F(SharedSettings, ThatWereTakenBackAreTheConfigurationsInTheNextRun) {
  launch();
  session->setAskToBuyEnabled(true);
  session->resetToDefaultState();
  launch(unusual());
  EXPECT_EQ(session->storefront(), "DEU");
  EXPECT_THAT(other->settings(), IsEmpty());
}

TEST_F(SharedSettings, OfAnotherProgramHoldHere) {
  launch();
  EXPECT_FALSE(other->set("askToBuyEnabled", "true"));
  absorb();
  EXPECT_TRUE(session->askToBuyEnabled());
}

TEST_F(SharedSettings, OfHereAreSeenByAnotherProgram) {
  launch();
  (void)session->setTimeRate(13);
  EXPECT_THAT(other->settings(), ElementsAre(testing::Pair("timeRate", "13")));
}

TEST_F(SharedSettings, OfAnotherProgramThatWereTakenBackGoBackHere) {
  launch();
  session->setAskToBuyEnabled(true);
  EXPECT_FALSE(other->clearSettings());
  absorb();
  EXPECT_FALSE(session->askToBuyEnabled());
}

TEST_F(SharedSettings, AStorefrontOfAnotherProgramIsTold) {
  launch();
  EXPECT_FALSE(other->set("storefront", "BRA"));
  absorb();
  EXPECT_THAT(observer.journal(), ElementsAre("storefront changed"));
}

TEST_F(SharedSettings, AStorefrontThatWasThereBeforeTheStartIsNotTold) {
  EXPECT_FALSE(other->set("storefront", "BRA"));
  launch();
  absorb();
  EXPECT_THAT(observer.journal(), IsEmpty());
  EXPECT_EQ(session->storefront(), "BRA");
}

TEST_F(SharedSettings, AreJudgedByWhileNobodyHasLookedYet) {
  launch();
  tests::OpenShop::queue().addPayment(SKPayment({.productIdentifier = "gems"}));
  tests::turn();
  EXPECT_FALSE(other->set("askToBuyEnabled", "true"));
  absorb();
  EXPECT_THAT(tests::books(*session), ElementsAre("1 gems deferred"));
}

TEST_F(SharedSettings, ThatAreNoneAreLeftOutWithALine) {
  EXPECT_FALSE(other->set("timeRate", "7"));
  EXPECT_FALSE(other->set("colour", "blue"));
  EXPECT_FALSE(other->set("askToBuyEnabled", "true"));
  tests::CapturedError error;
  launch();
  const auto said = error.text();
  EXPECT_THAT(said, HasSubstr("The ledger has a setting that is left out: timeRate is one of"));
  EXPECT_THAT(said, HasSubstr("The ledger has a setting that is left out: colour is no setting."));
  EXPECT_TRUE(session->askToBuyEnabled());
  EXPECT_EQ(session->timeRate(), 0);
}

TEST_F(SharedSettings, ThatSwitchTheBillingRetryOffLetItSucceedHere) {
  launch();
  session->setBillingRetryOnRenewalEnabled(true);
  tests::OpenShop::queue().addPayment(SKPayment({.productIdentifier = "club"}));
  (void)turnUntilIdle();
  LedgerEntries entries = {*other->find(1)};
  entries[0].period->ends = Foundation::Date::sinceEpoch(1);
  ASSERT_FALSE(other->update(entries, Ledger::Durability::powerCut));
  absorb();
  session->clockDidChange();
  ASSERT_THAT(tests::books(*session), ElementsAre("1 club purchased issue"));

  EXPECT_FALSE(other->set("billingRetryOnRenewalEnabled", "false"));
  absorb();

  EXPECT_THAT(tests::books(*session), ElementsAre("1 club purchased", "2 club purchased"));
}

}  // namespace
}  // namespace StoreKit
