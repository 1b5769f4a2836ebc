// One scenario, played again: with a clock and identifiers of a test, it gives the same
// transactions, byte for byte.

#include "platform/embedded/store/MemoryLedger.hpp"
#include "tests/fakes/ObservedShop.hpp"
#include "tests/fakes/SubscriptionShop.hpp"
#include "tests/platform/embedded/store/ledger/LedgerInFolder.hpp"

namespace StoreKit {
namespace {

using tests::ManualClock;
using tests::turnUntilIdle;

std::string text(const std::optional<Foundation::Date>& date) {
  if (!date) return "-";
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%a", date->timeIntervalSince1970());
  return buffer;
}

// Everything that a session shows of a transaction.
std::string text(const StoreTransaction& each) {
  std::string line = std::to_string(each.identifier);
  line += " original " + std::to_string(each.originalTransactionIdentifier.value_or(0));
  line += " platform " + each.transactionIdentifier.value_or("-");
  line += " " + each.productIdentifier + " x" + std::to_string(each.quantity);
  line += " state " + std::to_string(static_cast<int>(each.state));
  line += " for " + each.applicationUsername.value_or("-");
  line += " error " + (each.error ? std::to_string(each.error->code()) : "-");
  line += " bought " + text(each.purchaseDate) + " refunded " + text(each.cancelDate);
  line += " expires " + text(each.expirationDate) + " flags ";
  for (const bool flag : {each.finished, each.autoRenewingEnabled, each.hasPurchaseIssue,
                          each.isPendingPriceIncreaseConsent, each.pendingAskToBuyConfirmation}) {
    line += flag ? '1' : '0';
  }
  return line;
}

// A bit of everything; what it left in the books, and what was heard.
class Scene {
 public:
  explicit Scene(std::unique_ptr<Ledger> ledger)
      : session_(configuration(), clock_.sources(), std::move(ledger)) {
    observer_.onStorePayment = [](const auto&, const auto&) { return true; };
    observer_.observe();
    (void)turnUntilIdle();
  }
  ~Scene() {
    (void)StoreSession(tests::shop());  // lets go of the ledger
    (void)turnUntilIdle();
  }
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;

  std::vector<std::string> play() {
    buy("gems");
    buy("monthly");
    session_.setAskToBuyEnabled(true);
    buy("crown");
    session_.resetToDefaultState();
    (void)session_.approveAskToBuyTransaction(3);
    clock_.advance(session_, 100.1);
    buy("basic");
    session_.setInterruptedPurchasesEnabled(true);
    buy("gold");
    session_.setInterruptedPurchasesEnabled(false);
    clock_.advance(session_, 1000.3);
    (void)session_.resolveIssueForTransaction(5);
    (void)session_.beginStorePurchase("weekly");
    (void)turnUntilIdle();
    finishAll();
    (void)session_.refundTransaction(1);
    clock_.advance(session_, 777.7);
    queue().restoreCompletedTransactions(std::nullopt);
    (void)turnUntilIdle();
    return written();
  }

 private:
  static StoreConfiguration configuration() {
    auto configuration = tests::subscriptions();
    configuration.settings.timeRate = tests::kFastRate;
    return configuration;
  }
  static SKPaymentQueue& queue() { return tests::OpenShop::queue(); }
  static void buy(const std::string& product) {
    queue().addPayment(SKPayment({.productIdentifier = product, .applicationUsername = "ann"}));
    (void)turnUntilIdle();
  }
  static void finishAll() {
    for (const auto& each : queue().transactions()) queue().finishTransaction(each);
    (void)turnUntilIdle();
  }
  [[nodiscard]] std::vector<std::string> written() const {
    std::vector<std::string> lines = observer_.journal();
    for (const auto& each : session_.allTransactions()) lines.push_back(text(each));
    return lines;
  }

  ManualClock clock_;
  StoreSession session_;
  tests::JournalingObserver observer_;
};

using Replay = tests::LedgerInFolder;

TEST_F(Replay, OfAScenarioGivesTheSameTransactionsEveryTime) {
  const auto first = Scene(std::make_unique<MemoryLedger>()).play();
  EXPECT_GT(first.size(), 25U);
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(Scene(std::make_unique<MemoryLedger>()).play(), first);
  }
}

TEST_F(Replay, OnAFileGivesTheSameAsInMemory) {
  const auto inMemory = Scene(std::make_unique<MemoryLedger>()).play();
  EXPECT_EQ(Scene(tests::openLedger(path)).play(), inMemory);
  EXPECT_EQ(Scene(tests::openLedger(folder.file("another.ledger"))).play(), inMemory);
}

// The bytes themselves: a change of them is a change for everybody who keeps a scenario.
TEST_F(Replay, OfAPurchaseIsTheseBytes) {
  tests::SubscriptionShop shop;
  tests::JournalingObserver observer;
  observer.observe();
  shop.own("monthly", "ann");
  shop.wait(tests::kFastMonth);
  std::vector<std::string> lines;
  for (const auto& each : shop.session.allTransactions()) lines.push_back(text(each));
  EXPECT_THAT(lines, testing::ElementsAre(
                         "1 original 0 platform 101 monthly x1 state 1 for ann error - "
                         "bought 0x1.954fc4p+30 refunded - expires 0x1.954fc8bp+30 flags 10000",
                         "2 original 1 platform 102 monthly x1 state 1 for ann error - "
                         "bought 0x1.954fc8bp+30 refunded - expires 0x1.954fcd6p+30 flags 01000"));
}

}  // namespace
}  // namespace StoreKit
