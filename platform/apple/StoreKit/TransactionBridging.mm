#include "platform/apple/StoreKit/TransactionBridging.hpp"

#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Foundation/Bridging.hpp"
#include "platform/apple/StoreKit/DownloadBridging.hpp"
#include "platform/apple/StoreKit/PaymentBridging.hpp"

namespace StoreKit {

namespace {

using Foundation::askPlatform;

class TransactionView final : public SKPaymentTransaction {
 public:
  explicit TransactionView(::SKPaymentTransaction* native)
      : native_(Foundation::Retained<::SKPaymentTransaction*>::retain(native)) {}

  ::SKPaymentTransaction* native() const { return native_.get(); }

  SKPaymentPtr payment() const override {
    const auto payment = askPlatform("SKPaymentTransaction::payment", SKPaymentPtr(),
                                     [&] { return paymentFrom([native() payment]); });
    return payment ? payment : std::make_shared<const SKPayment>(SKPayment::Values());
  }

  SKPaymentTransactionState transactionState() const override {
    return askPlatform("SKPaymentTransaction::transactionState", SKPaymentTransactionState(), [&] {
      return static_cast<SKPaymentTransactionState>([native() transactionState]);
    });
  }

  std::optional<std::string> transactionIdentifier() const override {
    return askPlatform(
        "SKPaymentTransaction::transactionIdentifier", std::optional<std::string>(),
        [&] { return Foundation::optionalTextFrom([native() transactionIdentifier]); });
  }

  std::optional<Foundation::Date> transactionDate() const override {
    return askPlatform("SKPaymentTransaction::transactionDate", std::optional<Foundation::Date>(),
                       [&] { return Foundation::dateFrom([native() transactionDate]); });
  }

  std::optional<Foundation::NSError> error() const override {
    return askPlatform("SKPaymentTransaction::error", std::optional<Foundation::NSError>(),
                       [&] { return Foundation::optionalErrorFrom([native() error]); });
  }

  SKPaymentTransactionPtr originalTransaction() const override {
    return askPlatform("SKPaymentTransaction::originalTransaction", SKPaymentTransactionPtr(),
                       [&] { return transactionFrom([native() originalTransaction]); });
  }

  SKDownloads downloads() const override {
    return askPlatform("SKPaymentTransaction::downloads", SKDownloads(),
                       [&] { return downloadsFrom([native() downloads]); });
  }

  bool isEqual(const SKPaymentTransaction& other) const override {
    const auto* const view = dynamic_cast<const TransactionView*>(&other);
    return view != nullptr && askPlatform("SKPaymentTransaction::isEqual", false, [&] {
             return static_cast<bool>([native() isEqual:view->native()]);
           });
  }

  std::size_t hash() const override {
    return askPlatform("SKPaymentTransaction::hash", std::size_t{0},
                       [&] { return std::size_t{[native() hash]}; });
  }

 private:
  Foundation::Retained<::SKPaymentTransaction*> native_;
};

}  // namespace

SKPaymentTransactionPtr transactionFrom(::SKPaymentTransaction* transaction) {
  if (transaction == nil) return nullptr;
  return std::make_shared<const TransactionView>(transaction);
}

SKPaymentTransactions transactionsFrom(NSArray<::SKPaymentTransaction*>* list) {
  return Foundation::listFrom(list, transactionFrom);
}

::SKPaymentTransaction* nativeTransaction(const SKPaymentTransactionPtr& transaction) {
  const auto* const view = dynamic_cast<const TransactionView*>(transaction.get());
  return view == nullptr ? nil : view->native();
}

}  // namespace StoreKit
