#pragma once

#include <string_view>
#include <vector>

#include "platform/embedded/store/StoreConfiguration.hpp"

namespace StoreKit {

/// The text that a user of `locale` gets, the first that fits best: the very locale ("-" and "_"
/// are one), else the same language and script, else the same language, else `en_US`, else the
/// first. Null when there is none at all.
[[nodiscard]] const StoreConfiguration::Localization* chooseLocalization(
    const std::vector<StoreConfiguration::Localization>& localizations, std::string_view locale);

}  // namespace StoreKit
