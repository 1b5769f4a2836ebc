#pragma once

#include <optional>
#include <string_view>

#include "platform/Foundation/DefaultsObject.hpp"
#include "platform/Foundation/JSONEncoder.hpp"

namespace Foundation {

/// How a list or map of the user defaults stands in their file: as JSON text in which each value is
/// an object with its kind as the one key, {"list":[{"integer":1},{"text":"one"}]}. The names of
/// the kinds are on people's disks and must not change.

/// "data", "text", "integer", "floating", "boolean", "date", "list" or "map".
[[nodiscard]] std::string_view nameOf(DefaultsObject::Case kind);
/// Absent for any other name.
[[nodiscard]] std::optional<DefaultsObject::Case> caseOf(std::string_view name);

/// Fails for texts that are not UTF-8, and for what is too deep.
[[nodiscard]] JSONEncoding jsonFromObject(const DefaultsObject& object);
/// Absent for what `jsonFromObject` would not write.
[[nodiscard]] std::optional<DefaultsObject> objectFromJSON(std::string_view json);

}  // namespace Foundation
