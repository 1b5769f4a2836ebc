#pragma once

#include "platform/embedded/store/configuration/ConfigurationFields.hpp"

namespace StoreKit::detail {

/// Reads `settings` of the file's top level; what is missing has its default.
[[nodiscard]] StoreConfiguration::Settings readSettings(const ConfigurationFields& file,
                                                        ConfigurationProblems& problems);

}  // namespace StoreKit::detail
