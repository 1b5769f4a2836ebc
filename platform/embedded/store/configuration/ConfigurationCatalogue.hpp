#pragma once

#include <vector>

#include "platform/embedded/store/configuration/ConfigurationFields.hpp"

namespace StoreKit::detail {

/// Reads everything that a file of the right shape offers for sale, in the order of the catalogue.
[[nodiscard]] std::vector<StoreConfiguration::Product> readCatalogue(
    const ConfigurationFields& file, ConfigurationProblems& problems);

}  // namespace StoreKit::detail
