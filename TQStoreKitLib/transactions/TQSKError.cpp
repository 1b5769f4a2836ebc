#include "TQStoreKitLib/transactions/TQSKError.hpp"

#include <array>
#include <cstdint>

#include "platform/Foundation/Bundle.hpp"

namespace TQStoreKitLib {

namespace {

// Indexed by the store error's code.
constexpr std::array<const char*, 9> kMessages = {
    "Unknown error. Please contact support",
    "Not allowed to make the payment",
    // A user who cancels is told about restoring; the apostrophe is U+2019.
    "If you’ve purchased a Premium Subscription, you may need to restore your subscription to "
    "continually enjoy the Premium features",
    "The purchase identifier was invalid",
    "The device is not allowed to make the payment",
    "The product is not available in the current storefront",
    "Access to cloud service information is not allowed",
    "Could not connect to the network",
    "User has revoked permission to use this cloud service",
};

}  // namespace

std::optional<std::string> TQSKError::errorDescription() const {
  return Foundation::localizedString(msg_);
}

std::string storeErrorMessage(const StoreKit::SKError& error) {
  const auto code = static_cast<std::uint64_t>(error.code());
  if (code >= kMessages.size()) return error.localizedDescription();
  return kMessages[code];
}

TQSKError makeStoreError(const StoreKit::SKError& error) {
  return {detail::LibraryOnly{}, storeErrorMessage(error)};
}

}  // namespace TQStoreKitLib
