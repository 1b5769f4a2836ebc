#include "TQStoreKitLib/transactions/TQPaymentsController.hpp"

#include <algorithm>
#include <utility>

#include "platform/Foundation/Print.hpp"

namespace TQStoreKitLib {

namespace {

using State = StoreKit::SKPaymentTransactionState;

TQTransactionResult purchasedResult(const TQPayment& payment, const StoreKit::SKPayment& sold,
                                    const StoreKit::SKPaymentTransactionPtr& transaction) {
  return TQTransactionResult::purchased(
      {.productId = sold.productIdentifier(),
       .quantity = sold.quantity(),
       .product = payment.product,
       .transaction = paymentTransaction(transaction),
       .originalTransaction = paymentTransaction(transaction->originalTransaction()),
       .needsFinishTransaction = !payment.atomically});
}

TQTransactionResult failedResult(const TQPayment& payment,
                                 const StoreKit::SKPaymentTransaction& transaction) {
  if (const auto error = transaction.error()) {
    return TQTransactionResult::failed(payment.product, StoreKit::SKError(*error));
  }
  return TQTransactionResult::failed(
      payment.product, StoreKit::SKError(StoreKit::SKError::Code::unknown, "Unknown error"));
}

bool resolves(State state) {
  return state == State::purchased || state == State::failed || state == State::restored;
}

}  // namespace

void TQPaymentsController::append(TQPayment payment) {
  waiting_.push_back({nextSerial_++, std::make_shared<const TQPayment>(std::move(payment))});
}

std::vector<TQPayment> TQPaymentsController::payments() const {
  std::vector<TQPayment> copy;
  copy.reserve(waiting_.size());
  for (const auto& entry : waiting_) copy.push_back(*entry.payment);
  return copy;
}

std::optional<std::size_t> TQPaymentsController::findPaymentIndex(
    std::string_view withProductIdentifier) const {
  const auto found = std::find_if(waiting_.begin(), waiting_.end(), [&](const Waiting& entry) {
    return entry.payment->product->productIdentifier() == withProductIdentifier;
  });
  if (found == waiting_.end()) return std::nullopt;
  return static_cast<std::size_t>(found - waiting_.begin());
}

StoreKit::SKPaymentTransactions TQPaymentsController::processTransactions(
    const StoreKit::SKPaymentTransactions& transactions, TQPaymentQueue& paymentQueue) {
  const auto keepAlive = weak_from_this().lock();
  StoreKit::SKPaymentTransactions unhandled;
  for (const auto& transaction : transactions) {
    if (!resolve(transaction, paymentQueue)) unhandled.push_back(transaction);
  }
  return unhandled;
}

bool TQPaymentsController::processTransaction(const StoreKit::SKPaymentTransactionPtr& transaction,
                                              TQPaymentQueue& paymentQueue) {
  const auto keepAlive = weak_from_this().lock();
  // The caller's pointer may be changed by the callback.
  const auto held = transaction;  // NOLINT(performance-unnecessary-copy-initialization)
  return resolve(held, paymentQueue);
}

bool TQPaymentsController::resolve(const StoreKit::SKPaymentTransactionPtr& transaction,
                                   TQPaymentQueue& paymentQueue) {
  const auto sold = transaction->payment();
  const auto& productId = sold->productIdentifier();
  const auto index = findPaymentIndex(productId);
  const auto state = transaction->transactionState();
  if (!index || !resolves(state)) return false;

  // The callback may change the list in any way: from here on the entry is known by its serial.
  const Waiting entry = waiting_[*index];
  const TQPayment& payment = *entry.payment;
  if (state == State::restored) {
    Foundation::print("Unexpected restored transaction for payment " + productId);
  }
  const auto result = state == State::failed ? failedResult(payment, *transaction)
                                             : purchasedResult(payment, *sold, transaction);
  if (payment.callback) payment.callback(result);
  if (payment.atomically || state == State::failed) paymentQueue.finishTransaction(transaction);
  remove(entry.serial);
  return state != State::restored;
}

void TQPaymentsController::remove(std::uint64_t serial) {
  const auto found = std::find_if(waiting_.begin(), waiting_.end(),
                                  [&](const Waiting& entry) { return entry.serial == serial; });
  if (found != waiting_.end()) waiting_.erase(found);
}

}  // namespace TQStoreKitLib
