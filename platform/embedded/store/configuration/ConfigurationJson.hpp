#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/embedded/store/configuration/ConfigurationValue.hpp"

namespace StoreKit::detail {

/// How deep arrays and objects of a configuration file may stand in each other.
inline constexpr std::size_t kDeepestNesting = 128;
/// How many values a configuration file may hold, so that no text makes a tree of gigabytes.
inline constexpr std::uint32_t kMostValues = 4'000'000;

/// What a JSON text says, or why it is none.
struct JsonReading {
  std::optional<ConfigurationValue> value;
  std::string place;   ///< "line 3, column 7", or empty when it is the text as a whole
  std::string reason;  ///< in plain words
};

/// Reads strict JSON in UTF-8: no comments, no trailing commas, nothing after the value. A
/// byte-order mark is skipped.
[[nodiscard]] JsonReading readJson(std::string_view text);

}  // namespace StoreKit::detail
