#include "platform/embedded/store/server/StoreSessionError.hpp"

#include <utility>

namespace StoreKit {

Foundation::NSError storeSessionError(StoreSessionError code, std::string description) {
  return Foundation::NSError::withDescription(std::string(kStoreSessionErrorDomain),
                                              static_cast<std::int64_t>(code),
                                              std::move(description));
}

}  // namespace StoreKit
