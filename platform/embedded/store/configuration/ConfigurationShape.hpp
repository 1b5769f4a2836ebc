#pragma once

#include "platform/embedded/store/configuration/ConfigurationProblems.hpp"

namespace StoreKit::detail {

/// Refuses a file in which something has the wrong type that decides what is sold and for how much.
/// What is missing or null is no matter of shape. Repeated keys are warned about, wherever they
/// are.
void checkShape(const ConfigurationValue& root, ConfigurationProblems& problems);

}  // namespace StoreKit::detail
