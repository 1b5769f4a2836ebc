#include "tests/fakes/ObservedShop.hpp"

namespace StoreKit {
namespace {

using tests::Journal;
using tests::JournalingObserver;
using tests::OpenShop;
using tests::turnUntilIdle;

enum class Message {
  asked,
  storefrontChanged,
  revoked,
  revokedAtStart,
  deferred,
  approved,
  resolved,
  renewed,
  boughtOutside,
  cleared
};
constexpr const char* kMessageNames[] = {
    "asked",    "storefrontChanged", "revoked", "revokedAtStart", "deferred",
    "approved", "resolved",          "renewed", "boughtOutside",  "cleared"};
void PrintTo(Message value, std::ostream* out) { *out << kMessageNames[static_cast<int>(value)]; }

enum class Deed {
  clear,
  deleteAll,
  relaunch,
  openAnother,
  removeObserver,
  destroyObserver,
  destroyWitness,
  add,
  finishAll,
  approveAll,
  refundAll,
  beginStorePurchase,
  changeStorefront,
  reset,
  moveOn
};
constexpr const char* kDeedNames[] = {"clear",
                                      "deleteAll",
                                      "relaunch",
                                      "openAnother",
                                      "removeObserver",
                                      "destroyObserver",
                                      "destroyWitness",
                                      "add",
                                      "finishAll",
                                      "approveAll",
                                      "refundAll",
                                      "beginStorePurchase",
                                      "changeStorefront",
                                      "reset",
                                      "moveOn"};
void PrintTo(Deed value, std::ostream* out) { *out << kDeedNames[static_cast<int>(value)]; }

constexpr Message kMessages[] = {Message::asked,         Message::storefrontChanged,
                                 Message::revoked,       Message::revokedAtStart,
                                 Message::deferred,      Message::approved,
                                 Message::resolved,      Message::renewed,
                                 Message::boughtOutside, Message::cleared};
constexpr Deed kDeeds[] = {Deed::clear,
                           Deed::deleteAll,
                           Deed::relaunch,
                           Deed::openAnother,
                           Deed::removeObserver,
                           Deed::destroyObserver,
                           Deed::destroyWitness,
                           Deed::add,
                           Deed::finishAll,
                           Deed::approveAll,
                           Deed::refundAll,
                           Deed::beginStorePurchase,
                           Deed::changeStorefront,
                           Deed::reset,
                           Deed::moveOn};

// Two observers; the first one does its deed at one message, once.
class ControlReentrancy : public testing::TestWithParam<std::tuple<Message, Deed>> {
 protected:
  OpenShop shop;
  std::shared_ptr<Journal> journal = std::make_shared<Journal>();
  std::unique_ptr<JournalingObserver> actor =
      std::make_unique<JournalingObserver>(journal, "actor");
  std::unique_ptr<JournalingObserver> witness =
      std::make_unique<JournalingObserver>(journal, "witness");
  bool done = false;

  ControlReentrancy() {
    actor->observe();
    witness->observe();
    shop.own("crown");  // 1
    shop.own("club");   // 2
    shop.session.setAskToBuyEnabled(true);
    shop.buy("cape");  // 3, deferred
    shop.session.setAskToBuyEnabled(false);
    shop.session.setInterruptedPurchasesEnabled(true);
    shop.buy("gems");  // 4, with an issue
    shop.session.setInterruptedPurchasesEnabled(false);
  }

  void toEach(StoreSession::Failure (StoreSession::*operation)(std::int64_t)) {
    for (const auto& each : shop.session.allTransactions()) {
      (void)(shop.session.*operation)(each.identifier);
    }
  }

  void act() {
    if (std::exchange(done, true)) return;
    auto& session = shop.session;
    switch (std::get<Deed>(GetParam())) {
      case Deed::clear:
        (void)session.clearTransactions();
        return;
      case Deed::deleteAll:
        return toEach(&StoreSession::deleteTransaction);
      case Deed::relaunch:
        return session.relaunch();
      case Deed::openAnother:
        (void)StoreSession(tests::shop());
        return;
      case Deed::removeObserver:
        return actor->stop();
      case Deed::destroyObserver:
        return actor.reset();
      case Deed::destroyWitness:
        witness = std::make_unique<JournalingObserver>(journal, "witness");
        return witness->observe();
      case Deed::add:
        return shop.add("coins");
      case Deed::finishAll:
        for (const auto& each : OpenShop::queue().transactions()) {
          if (each->transactionState() == SKPaymentTransactionState::purchasing) continue;
          OpenShop::queue().finishTransaction(each);
        }
        return;
      case Deed::approveAll:
        return toEach(&StoreSession::approveAskToBuyTransaction);
      case Deed::refundAll:
        return toEach(&StoreSession::refundTransaction);
      case Deed::beginStorePurchase:
        (void)session.beginStorePurchase("coins");
        return;
      case Deed::changeStorefront:
        (void)session.setStorefront("DEU");
        return;
      case Deed::reset:
        return session.resetToDefaultState();
      case Deed::moveOn:
        (void)session.forceRenewalOfSubscription("club");
        return session.clockDidChange();
    }
  }

  void actWhenUpdatedTo(SKPaymentTransactionState state) {
    actor->onUpdated = [this, state](const SKPaymentTransactions& transactions) {
      if (transactions.at(0)->transactionState() == state) act();
    };
  }

  // Makes the first observer act at the message, and causes the message.
  void causeMessage() {
    auto& session = shop.session;
    using State = SKPaymentTransactionState;
    switch (std::get<Message>(GetParam())) {
      case Message::asked:
        actor->onStorePayment = [this](const auto&, const auto&) {
          act();
          return true;
        };
        (void)session.beginStorePurchase("coins");
        return;
      case Message::storefrontChanged:
        actor->onStorefrontChanged = [this] { act(); };
        (void)session.setStorefront("BRA");
        return;
      case Message::revoked:
        actor->onRevoked = [this] { act(); };
        (void)session.refundTransaction(1);
        return;
      case Message::revokedAtStart:
        actor->onRevoked = [this] { act(); };
        (void)session.refundTransaction(1);
        return session.relaunch();
      case Message::deferred:
        session.setAskToBuyEnabled(true);
        actWhenUpdatedTo(State::deferred);
        return shop.add("cape");
      case Message::approved:
        actWhenUpdatedTo(State::purchased);
        (void)session.approveAskToBuyTransaction(3);
        return;
      case Message::resolved:
        actWhenUpdatedTo(State::purchased);
        (void)session.resolveIssueForTransaction(4);
        return;
      case Message::renewed:
        actWhenUpdatedTo(State::purchased);
        (void)session.forceRenewalOfSubscription("club");
        return;
      case Message::boughtOutside:
        actWhenUpdatedTo(State::purchased);
        (void)session.buyProduct("cape");
        return;
      case Message::cleared:
        actor->onRemoved = [this] { act(); };
        (void)session.clearTransactions();
        return;
    }
  }

  [[nodiscard]] std::ptrdiff_t timesHeard(const std::string& line) const {
    return std::count(journal->begin(), journal->end(), "witness " + line);
  }
};

// AddressSanitizer watches; and after whatever happened, the queue must still sell and finish.
TEST_P(ControlReentrancy, LeavesTheQueueInOrder) {
  causeMessage();
  ASSERT_TRUE(turnUntilIdle());
  ASSERT_TRUE(done);
  shop.session.setAskToBuyEnabled(false);
  (void)turnUntilIdle();
  journal->clear();
  shop.own("season");
  EXPECT_EQ(timesHeard("updated: season purchasing"), 1);
  EXPECT_EQ(timesHeard("updated: season purchased"), 1);
  EXPECT_EQ(timesHeard("removed: season purchased"), 1);
}

INSTANTIATE_TEST_SUITE_P(AnyDeedAtAnyMessage, ControlReentrancy,
                         testing::Combine(testing::ValuesIn(kMessages), testing::ValuesIn(kDeeds)));

class AskedInside : public tests::ObservedShop<OpenShop> {
 protected:
  // Runs `deed` inside the first question about a purchase that was begun in the store.
  void whenAsked(std::function<void()> deed, bool wanted = true) {
    observer.onStorePayment = [this, deed = std::move(deed), wanted](const auto&, const auto&) {
      observer.onStorePayment = nullptr;
      deed();
      return wanted;
    };
    (void)shop.session.beginStorePurchase("gems");
  }
};

TEST_F(AskedInside, ARelaunchMakesItBeAskedAgain) {
  whenAsked([this] { shop.session.relaunch(); });
  EXPECT_THAT(heard(), testing::ElementsAre("asked: gems", "asked: gems"));
  EXPECT_THAT(tests::books(shop.session), testing::IsEmpty());
}

TEST_F(AskedInside, AnotherStoreForgetsIt) {
  std::optional<StoreSession> another;
  whenAsked([&] { another.emplace(tests::shop()); });
  EXPECT_THAT(heard(), testing::ElementsAre("asked: gems"));
  EXPECT_THAT(tests::books(*another), testing::IsEmpty());
}

TEST_F(AskedInside, ClearingTakesItAway) {
  whenAsked([this] { (void)shop.session.clearTransactions(); });
  EXPECT_THAT(heard(), testing::ElementsAre("asked: gems"));
  EXPECT_THAT(tests::books(shop.session), testing::IsEmpty());
}

TEST_F(AskedInside, APaymentOfTheSameProductIsASecondPurchase) {
  whenAsked([this] { shop.add("gems"); });
  (void)turnUntilIdle();
  EXPECT_THAT(tests::books(shop.session),
              testing::ElementsAre("1 gems purchased", "2 gems purchased"));
}

TEST_F(AskedInside, AnotherStorePurchaseIsAskedAboutAfterwards) {
  whenAsked([this] { (void)shop.session.beginStorePurchase("crown"); }, false);
  EXPECT_THAT(heard(), testing::ElementsAre("asked: gems", "asked: crown"));
}

}  // namespace
}  // namespace StoreKit
