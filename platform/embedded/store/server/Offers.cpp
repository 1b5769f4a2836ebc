#include "platform/embedded/store/server/Offers.hpp"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "platform/Foundation/Base64.hpp"

namespace StoreKit {

namespace {

using Code = SKError::Code;

constexpr double kSecondsOfADay = 24 * 60 * 60;
// A server's clock may be a little ahead.
constexpr double kClockTolerance = 5 * 60;

bool isComplete(const SKPaymentDiscount& discount) {
  return !discount.identifier.empty() && !discount.keyIdentifier.empty() &&
         !discount.nonce.empty() && !discount.signature.empty() && discount.timestamp != 0;
}

// "2f1a7c1e-7f0a-4d0e-9b56-0a6f0c4a8f11".
bool isLowerCaseUUID(std::string_view text) {
  constexpr std::string_view kShape = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
  const auto fits = [](char c, char shape) {
    const bool digit = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
    return shape == '-' ? c == '-' : digit;
  };
  return text.size() == kShape.size() && std::equal(text.begin(), text.end(), kShape.begin(), fits);
}

bool isRecent(std::int64_t milliseconds, Foundation::Date now) {
  const double age = now.timeIntervalSince1970() - static_cast<double>(milliseconds) / 1000;
  return age <= kSecondsOfADay && age >= -kClockTolerance;
}

bool couldBeSigned(const SKPaymentDiscount& discount, Foundation::Date now) {
  const auto signature = Foundation::dataFromBase64(discount.signature);
  return isLowerCaseUUID(discount.nonce) && signature && !signature->empty() &&
         isRecent(discount.timestamp, now);
}

}  // namespace

const SKProductDiscount* findOffer(const SKProduct& product, const std::string& identifier) {
  const auto& offers = product.discounts();
  const auto found = std::find_if(offers.begin(), offers.end(), [&](const auto& offer) {
    return offer.identifier == identifier;
  });
  return found == offers.end() ? nullptr : &*found;
}

std::optional<Code> refusal(const SKPaymentDiscount& discount, const SKProduct& product,
                            bool hasSubscribed, Foundation::Date now) {
  if (!isComplete(discount)) return Code::missingOfferParams;
  const auto* const offer = findOffer(product, discount.identifier);
  if (offer == nullptr) return Code::invalidOfferIdentifier;
  if (!couldBeSigned(discount, now)) return Code::invalidSignature;
  const bool perPeriod = offer->paymentMode != SKProductDiscountPaymentMode::payUpFront;
  if (perPeriod && !(offer->price < product.price())) return Code::invalidOfferPrice;
  if (!hasSubscribed) return Code::ineligibleForOffer;
  return std::nullopt;
}

}  // namespace StoreKit
