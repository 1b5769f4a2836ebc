#include "platform/apple/StoreKit/RefusedPayments.hpp"

#include <algorithm>

#include "platform/StoreKit/SKError.hpp"

namespace StoreKit {

namespace {

class RefusedTransaction final : public SKPaymentTransaction {
 public:
  explicit RefusedTransaction(SKPaymentPtr payment) : payment_(std::move(payment)) {}

  SKPaymentPtr payment() const override { return payment_; }
  SKPaymentTransactionState transactionState() const override {
    return SKPaymentTransactionState::failed;
  }
  std::optional<std::string> transactionIdentifier() const override { return std::nullopt; }
  std::optional<Foundation::Date> transactionDate() const override { return std::nullopt; }
  std::optional<Foundation::NSError> error() const override {
    return SKError(SKError::Code::paymentInvalid, "The platform refused the payment.").nsError();
  }
  SKPaymentTransactionPtr originalTransaction() const override { return nullptr; }
  SKDownloads downloads() const override { return {}; }

 private:
  SKPaymentPtr payment_;
};

}  // namespace

SKPaymentTransactionPtr RefusedPayments::add(const SKPayment& payment) {
  auto copy = std::make_shared<const SKPayment>(payment);
  transactions_.push_back(std::make_shared<const RefusedTransaction>(std::move(copy)));
  return transactions_.back();
}

bool RefusedPayments::finish(const SKPaymentTransactionPtr& transaction) {
  const auto found = std::find(transactions_.begin(), transactions_.end(), transaction);
  if (found == transactions_.end()) return false;
  transactions_.erase(found);
  return true;
}

}  // namespace StoreKit
