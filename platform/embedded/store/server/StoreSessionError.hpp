#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Foundation/NSError.hpp"

namespace StoreKit {

/// The domain of the errors that controlling the store answers with; the codes are ours.
inline constexpr std::string_view kStoreSessionErrorDomain = "StoreSessionErrorDomain";

enum class StoreSessionError : std::int64_t {
  invalidAction = 1,             ///< the transaction is not in a state for it
  invalidProductIdentifier = 2,  ///< nothing is sold under that identifier
  invalidProductType = 3,        ///< the product is no auto-renewable subscription
  noSubscriptionFound = 4,       ///< that subscription is not running
  noTransactionFound = 5,        ///< the ledger has no such transaction
  serviceUnavailable = 6,        ///< somebody else keeps changing the same transaction
  invalidSetting = 7,            ///< no setting has that name, or it cannot have that value
};

[[nodiscard]] Foundation::NSError storeSessionError(StoreSessionError code,
                                                    std::string description);

}  // namespace StoreKit
