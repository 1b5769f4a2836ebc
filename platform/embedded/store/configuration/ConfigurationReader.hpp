#pragma once

#include <string>

#include "platform/embedded/store/StoreConfiguration.hpp"

namespace StoreKit::detail {

/// The outcome for a file that is refused as a whole: one error.
[[nodiscard]] ConfigurationReading refusedConfiguration(const std::string& file, std::string place,
                                                        std::string reason);

}  // namespace StoreKit::detail
