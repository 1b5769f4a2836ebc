#include "platform/embedded/store/server/Verdict.hpp"

#include "platform/StoreKit/SKError.hpp"
#include "platform/embedded/store/server/Offers.hpp"

namespace StoreKit {

namespace {

using Code = SKError::Code;
using Failure = std::optional<Foundation::NSError>;

Failure failure(Code code) { return SKError(code).nsError(); }

bool isSellable(const SKPayment::Values& payment, const Catalogue& catalogue) {
  return catalogue.find(payment.productIdentifier) != nullptr && payment.quantity >= 1 &&
         payment.quantity <= kLargestQuantity;
}

Failure offerFailure(const SKPayment::Values& payment, const Catalogue& catalogue,
                     const Ledger& ledger, Foundation::Date now) {
  if (!payment.paymentDiscount) return std::nullopt;
  const auto& product = *catalogue.find(payment.productIdentifier)->product;
  const auto& group = product.subscriptionGroupIdentifier();
  const bool hasSubscribed = group && ledger.firstPeriod(*group);
  const auto code = refusal(*payment.paymentDiscount, product, hasSubscribed, now);
  return code ? failure(*code) : std::nullopt;
}

}  // namespace

Failure objection(const SKPayment::Values& payment, const Catalogue& catalogue) {
  return isSellable(payment, catalogue) ? std::nullopt : failure(Code::paymentInvalid);
}

Verdict judge(const SKPayment::Values& payment, const Catalogue& catalogue,
              const StoreConfiguration::Settings& settings, const Ledger& ledger,
              SimulatedErrors& ordered, Foundation::Date now) {
  if (auto error = ordered.take()) return {.error = std::move(error)};
  if (!settings.canMakePayments) return {.error = failure(Code::paymentNotAllowed)};
  if (auto error = objection(payment, catalogue)) return {.error = std::move(error)};
  if (auto error = offerFailure(payment, catalogue, ledger, now)) return {.error = error};
  if (settings.failTransactionsEnabled) {
    return {.error = failure(static_cast<Code>(settings.failureError))};
  }
  if (settings.interruptedPurchasesEnabled) {
    return {.error = failure(Code::unknown), .interrupted = true};
  }
  return {.deferred = settings.askToBuyEnabled || payment.simulatesAskToBuyInSandbox};
}

}  // namespace StoreKit
