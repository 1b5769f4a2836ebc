#pragma once

#include <optional>
#include <vector>

#include "platform/embedded/store/configuration/ConfigurationFields.hpp"

namespace StoreKit::detail {

/// The introductory offer of a subscription: the first usable one of the newer list, else the
/// older single one.
[[nodiscard]] std::optional<StoreConfiguration::Offer> readIntroductoryOffer(
    const ConfigurationFields& subscription, ConfigurationProblems& problems);

/// The promotional offers of a subscription, without those that nothing could name.
[[nodiscard]] std::vector<StoreConfiguration::Offer> readPromotionalOffers(
    const ConfigurationFields& subscription, ConfigurationProblems& problems);

}  // namespace StoreKit::detail
