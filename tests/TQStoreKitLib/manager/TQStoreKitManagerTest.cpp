#include "TQStoreKitLib/manager/TQStoreKitManager.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include "TQStoreKitLib/transactions/TQStoreKitInstance.hpp"
#include "platform/embedded/store/StoreSession.hpp"
#include "tests/fakes/CapturedPrints.hpp"
#include "tests/fakes/ForeignTransaction.hpp"
#include "tests/fakes/MainQueueTurns.hpp"
#include "tests/fakes/RecordedEvents.hpp"
#include "tests/fakes/ShopConfigurations.hpp"

namespace TQStoreKitLib::tests {
namespace {

using Ids = std::vector<std::string>;
using ::tests::turnUntilIdle;

constexpr const char* kOnlyOnce =
    "TQStoreKit.completeTransactions() should only be called once when the app launches. "
    "Ignoring this call";

// The manager is one for a process, so each of these tests runs in a process of its own.
class TQStoreKitManagerTest : public testing::Test {
 protected:
  static const TQCompleteTransactions& registration() {
    return *TQStoreKitInstance::shared()
                .paymentQueueController()
                .completeTransactionsController()
                ->completeTransactions();
  }

  // A transaction that the store has sold and that nobody has finished.
  static TQPurchase unfinishedPurchase() {
    std::optional<TQPurchase> bought;
    TQStoreKit::purchaseProduct("gems", {.atomically = false}, [&](const TQPurchaseResult& result) {
      bought = TQPurchase{.productId = "gems",
                          .quantity = 1,
                          .transaction = result.asSuccess()->transaction,
                          .needsFinishTransaction = true};
    });
    turnUntilIdle();
    return *bought;
  }

  static std::size_t queueLength() {
    return StoreKit::SKPaymentQueue::defaultQueue().transactions().size();
  }

  static Ids catalogue() {
    Ids identifiers;
    for (const auto& product : TQStoreKitManager::products()) {
      identifiers.push_back(product->productIdentifier());
    }
    std::sort(identifiers.begin(), identifiers.end());
    return identifiers;
  }

  static StoreKit::SKProductPtr fetched(const std::string& identifier) {
    TQStoreKitManager::retriveProducts({identifier}, nullptr);
    turnUntilIdle();
    return *TQStoreKitManager::products().begin();
  }

  StoreKit::StoreSession session_{::tests::shop()};
  CapturedPrints prints_;
};

TEST_F(TQStoreKitManagerTest, StartsWithEmptyListsAndAnEmptyCatalogue) {
  EXPECT_TRUE(TQStoreKitManager::products().empty());
  EXPECT_TRUE(TQStoreKitManager::consumableOrNonConsumableProductIds().empty());
  EXPECT_TRUE(TQStoreKitManager::subscriptionProductIds().empty());
}

TEST_F(TQStoreKitManagerTest, IsOneObject) {
  EXPECT_EQ(&TQStoreKitManager::sharedInstance(), &TQStoreKitManager::sharedInstance());
}

TEST_F(TQStoreKitManagerTest, SetupStoresTheListsWithTheirOrderAndRepetitions) {
  TQStoreKitManager::setup({"b", "a", "b"}, {"y", "x"}, nullptr);

  EXPECT_EQ(TQStoreKitManager::consumableOrNonConsumableProductIds(), (Ids{"b", "a", "b"}));
  EXPECT_EQ(TQStoreKitManager::subscriptionProductIds(), (Ids{"y", "x"}));
}

TEST_F(TQStoreKitManagerTest, TheListsCanBeChangedInPlace) {
  TQStoreKitManager::consumableOrNonConsumableProductIds().emplace_back("gems");
  TQStoreKitManager::subscriptionProductIds() = {"club"};

  EXPECT_EQ(TQStoreKitManager::consumableOrNonConsumableProductIds(), Ids{"gems"});
  EXPECT_EQ(TQStoreKitManager::subscriptionProductIds(), Ids{"club"});
}

TEST_F(TQStoreKitManagerTest, SetupFetchesNothing) {
  TQStoreKitManager::setup({"gems"}, {}, nullptr);
  turnUntilIdle();

  EXPECT_EQ(TQStoreKitInstance::shared().productsInfoController().inflightRequestCount(), 0U);
  EXPECT_TRUE(TQStoreKitManager::products().empty());
}

TEST_F(TQStoreKitManagerTest, SetupRegistersAtomically) {
  TQStoreKitManager::setup({}, {}, nullptr);

  EXPECT_TRUE(registration().atomically);
}

TEST_F(TQStoreKitManagerTest, TheApplicationsHandlerGetsTheListUnchangedAndNothingIsFinished) {
  const auto purchase = unfinishedPurchase();
  std::vector<TQPurchase> seen;
  TQStoreKitManager::setup({}, {},
                           [&](const std::vector<TQPurchase>& purchases) { seen = purchases; });

  registration().callback({purchase, purchase});
  turnUntilIdle();

  ASSERT_EQ(seen.size(), 2U);
  EXPECT_EQ(seen[0].transaction, purchase.transaction);
  EXPECT_EQ(queueLength(), 1U);
}

TEST_F(TQStoreKitManagerTest, WithoutAHandlerWhatNeedsFinishingIsFinished) {
  const auto purchase = unfinishedPurchase();
  TQStoreKitManager::setup({}, {}, nullptr);

  registration().callback({purchase});
  turnUntilIdle();

  EXPECT_EQ(queueLength(), 0U);
}

TEST_F(TQStoreKitManagerTest, WithoutAHandlerWhatNeedsNoFinishingIsLeftAlone) {
  auto purchase = unfinishedPurchase();
  purchase.needsFinishTransaction = false;
  TQStoreKitManager::setup({}, {}, nullptr);

  registration().callback({purchase});
  turnUntilIdle();

  EXPECT_EQ(queueLength(), 1U);
}

TEST_F(TQStoreKitManagerTest, WithoutAHandlerAForeignTransactionIsPrintedAndTheNextIsFinished) {
  const auto purchase = unfinishedPurchase();
  TQStoreKitManager::setup({}, {}, nullptr);
  const auto foreign = std::make_shared<const ForeignTransaction>();
  const auto printedBefore = prints_.lines().size();

  registration().callback(
      {TQPurchase{.transaction = foreign, .needsFinishTransaction = true}, purchase});
  turnUntilIdle();

  ASSERT_EQ(prints_.lines().size(), printedBefore + 1);
  EXPECT_EQ(prints_.lines().back(),
            "Object is not a SKPaymentTransaction: transactionId: 77, state: purchased");
  EXPECT_EQ(queueLength(), 0U);
}

TEST_F(TQStoreKitManagerTest, ASecondSetupKeepsTheFirstHandlerAndReplacesTheLists) {
  int first = 0;
  int second = 0;
  TQStoreKitManager::setup({"a"}, {"b"}, [&](const auto&) { ++first; });
  TQStoreKitManager::setup({"c"}, {"d"}, [&](const auto&) { ++second; });

  registration().callback({});

  EXPECT_EQ(prints_.lines(), Journal{kOnlyOnce});
  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 0);
  EXPECT_EQ(TQStoreKitManager::consumableOrNonConsumableProductIds(), Ids{"c"});
  EXPECT_EQ(TQStoreKitManager::subscriptionProductIds(), Ids{"d"});
}

TEST_F(TQStoreKitManagerTest, TheHandlerGetsWhatAnEarlierRunLeftBehind) {
  unfinishedPurchase();
  Ids delivered;
  TQStoreKitManager::setup({}, {}, [&](const std::vector<TQPurchase>& purchases) {
    for (const auto& purchase : purchases) delivered.push_back(purchase.productId);
  });

  session_.relaunch();
  turnUntilIdle();

  EXPECT_EQ(delivered, Ids{"gems"});
  EXPECT_EQ(queueLength(), 0U);
}

TEST_F(TQStoreKitManagerTest, TheCatalogueIsReplacedBeforeTheCompletionRuns) {
  Ids seenInCompletion;
  TQStoreKitManager::retriveProducts({"gems", "club", "nope"},
                                     [&](const TQProductsResponse& answer) {
                                       seenInCompletion = catalogue();
                                       EXPECT_EQ(answer.invalidIDs(), TQProductIdentifiers{"nope"});
                                       EXPECT_EQ(answer.valids().size(), 2U);
                                     });
  turnUntilIdle();

  EXPECT_EQ(seenInCompletion, (Ids{"club", "gems"}));
}

TEST_F(TQStoreKitManagerTest, WithoutACompletionTheCatalogueIsReplacedAllTheSame) {
  TQStoreKitManager::retriveProducts({"gems"}, nullptr);
  turnUntilIdle();

  EXPECT_EQ(catalogue(), Ids{"gems"});
}

TEST_F(TQStoreKitManagerTest, ProductsThatAreNotNamedAgainDropOut) {
  TQStoreKitManager::retriveProducts({"gems", "club"}, nullptr);
  turnUntilIdle();
  TQStoreKitManager::retriveProducts({"club"}, nullptr);
  turnUntilIdle();

  EXPECT_EQ(catalogue(), Ids{"club"});
}

TEST_F(TQStoreKitManagerTest, AnAnswerWithoutValidProductsEmptiesTheCatalogue) {
  TQStoreKitManager::retriveProducts({"gems"}, nullptr);
  turnUntilIdle();
  TQStoreKitManager::retriveProducts({"nope"}, nullptr);
  turnUntilIdle();

  EXPECT_TRUE(TQStoreKitManager::products().empty());
}

TEST_F(TQStoreKitManagerTest, AFailedFetchEmptiesTheCatalogueAndPassesTheErrorOn) {
  TQStoreKitManager::retriveProducts({"gems"}, nullptr);
  turnUntilIdle();
  session_.failProductsRequests(Foundation::NSError("Network", -1009));
  std::optional<std::int64_t> code;
  TQStoreKitManager::retriveProducts(
      {"gems"}, [&](const TQProductsResponse& answer) { code = answer.error()->code(); });
  turnUntilIdle();

  EXPECT_EQ(code, -1009);
  EXPECT_TRUE(TQStoreKitManager::products().empty());
}

TEST_F(TQStoreKitManagerTest, IdenticalFetchesShareOneRequest) {
  TQStoreKitManager::retriveProducts({"gems"}, nullptr);
  TQStoreKitManager::retriveProducts({"gems"}, nullptr);

  EXPECT_EQ(TQStoreKitInstance::shared().productsInfoController().inflightRequestCount(), 1U);
  turnUntilIdle();
}

TEST_F(TQStoreKitManagerTest, PurchaseBuysOnePieceAndFinishesIt) {
  const auto product = fetched("gems");
  std::optional<TQPurchaseDetails> bought;
  TQStoreKitManager::purchaseProduct(
      product, "bob", std::nullopt,
      [&](const TQPurchaseResult& result) { bought = *result.asSuccess(); });
  turnUntilIdle();

  ASSERT_TRUE(bought);
  EXPECT_EQ(bought->quantity, 1);
  EXPECT_FALSE(bought->needsFinishTransaction);
  EXPECT_EQ(queueLength(), 0U);
}

TEST_F(TQStoreKitManagerTest, PurchaseHandsTheStoreNameAndOfferAndSimulatesNothing) {
  const auto product = fetched("club");
  TQStoreKitManager::purchaseProduct(product, "bob", TQPaymentDiscount({.identifier = "offer"}),
                                     nullptr);
  Dispatch::MainLoop::drain();

  const auto transactions = StoreKit::SKPaymentQueue::defaultQueue().transactions();
  ASSERT_EQ(transactions.size(), 1U);
  const auto payment = transactions[0]->payment();
  EXPECT_EQ(payment->applicationUsername(), "bob");
  EXPECT_EQ(payment->paymentDiscount()->identifier, "offer");
  EXPECT_FALSE(payment->simulatesAskToBuyInSandbox());
  turnUntilIdle();
}

TEST_F(TQStoreKitManagerTest, ACancelledPurchaseIsAnErrorForTheCallerAndACancelEvent) {
  const auto product = fetched("gems");
  const RecordedEvents events;
  session_.cancelPurchases();
  std::string message;
  TQStoreKitManager::purchaseProduct(
      product, "", std::nullopt,
      [&](const TQPurchaseResult& result) { message = result.asError()->msg(); });
  turnUntilIdle();

  EXPECT_EQ(events.lines(), (Journal{"event purchase.begin gems", "event purchase.cancel gems"}));
  EXPECT_EQ(message,
            "If you’ve purchased a Premium Subscription, you may need to restore your subscription "
            "to continually enjoy the Premium features");
}

// An application's own way of buying: it counts, and never buys more than the library would.
class CountingOperations final : public TQStoreKitManager::Operations {
 public:
  void purchaseProduct(const StoreKit::SKProductPtr& product, std::string,
                       std::optional<TQPaymentDiscount> paymentDiscount,
                       TQStoreKitManager::PurchaseCompletion completion) override {
    ++purchases;
    Operations::purchaseProduct(product, "the account of this device", std::move(paymentDiscount),
                                std::move(completion));
  }
  void retriveProducts(const TQProductIdentifiers&, TQProductsCallback) override { ++fetches; }

  int purchases = 0;
  int fetches = 0;
};

TEST_F(TQStoreKitManagerTest, AnApplicationCanSubstituteAnOperationAndUseTheOneThatItReplaces) {
  const auto product = fetched("gems");
  const auto counting = std::make_shared<CountingOperations>();
  TQStoreKitManager::setOperations(counting);

  TQStoreKitManager::purchaseProduct(product, "", std::nullopt, nullptr);
  Dispatch::MainLoop::drain();

  EXPECT_EQ(counting->purchases, 1);
  const auto transactions = StoreKit::SKPaymentQueue::defaultQueue().transactions();
  ASSERT_EQ(transactions.size(), 1U);
  EXPECT_EQ(transactions[0]->payment()->applicationUsername(), "the account of this device");
  turnUntilIdle();
}

TEST_F(TQStoreKitManagerTest, ASubstitutedFetchLeavesTheCatalogueToTheApplication) {
  const auto counting = std::make_shared<CountingOperations>();
  TQStoreKitManager::setOperations(counting);

  TQStoreKitManager::retriveProducts({"gems"}, nullptr);
  turnUntilIdle();

  EXPECT_EQ(counting->fetches, 1);
  EXPECT_TRUE(TQStoreKitManager::products().empty());
}

TEST_F(TQStoreKitManagerTest, NullBringsTheLibrarysOwnOperationsBack) {
  const auto counting = std::make_shared<CountingOperations>();
  TQStoreKitManager::setOperations(counting);

  EXPECT_EQ(TQStoreKitManager::setOperations(nullptr), counting);
  TQStoreKitManager::retriveProducts({"gems"}, nullptr);
  turnUntilIdle();

  EXPECT_EQ(counting->fetches, 0);
  EXPECT_EQ(catalogue(), Ids{"gems"});
}

}  // namespace
}  // namespace TQStoreKitLib::tests
