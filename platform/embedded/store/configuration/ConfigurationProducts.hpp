#pragma once

#include <optional>
#include <string>

#include "platform/embedded/store/configuration/ConfigurationFields.hpp"

namespace StoreKit::detail {

/// Where an entry stands in the file.
struct ConfigurationSection {
  /// The type of an entry whose own type says nothing.
  ProductType usualType = ProductType::nonConsumable;
  /// The identifier of the subscription group around it; empty outside of the groups.
  std::string groupID;
};

/// Reads one entry that is for sale. Absent, with a warning, when its price or its period can't be
/// read: nothing is ever sold for a guessed price.
[[nodiscard]] std::optional<StoreConfiguration::Product> readProduct(
    const ConfigurationFields& entry, const ConfigurationSection& section,
    ConfigurationProblems& problems);

}  // namespace StoreKit::detail
