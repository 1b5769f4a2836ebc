#pragma once

#import <Foundation/Foundation.h>

#include <optional>
#include <string>

#include "platform/Foundation/DefaultsObject.hpp"

namespace Foundation {

/// What the user defaults hold, as the property lists that they are on the platform.

/// Absent for nil and for what is no property list. An integer beyond `std::int64_t`, which only
/// others can have stored, becomes the nearest double.
[[nodiscard]] std::optional<DefaultsObject> defaultsObjectFrom(id object);

/// Each of the eight kinds comes back as what it was.
[[nodiscard]] id nativeDefaultsObject(const DefaultsObject& object);

/// Why the user defaults cannot hold `object`; empty when they can.
[[nodiscard]] std::string storageProblem(const DefaultsObject& object);

}  // namespace Foundation
