#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Foundation::detail {

/// Where the parts of an address begin and end: views into its text.
struct URLParts {
  /// Absent for a relative address.
  std::optional<std::string_view> scheme{};
  /// User, host and port; absent without "//".
  std::optional<std::string_view> authority{};
  /// All before the path, the path, and all behind it.
  std::string_view head{};
  std::string_view path{};
  std::string_view tail{};
};

[[nodiscard]] URLParts partsOf(std::string_view url);

/// Whether `text` is an address, absolute or relative.
[[nodiscard]] bool isURL(std::string_view text);

/// The host in an authority, percent-decoded, without user, port and brackets.
[[nodiscard]] std::string hostIn(std::string_view authority);

/// Each "%" and its two digits become the byte that they stand for; others stay.
[[nodiscard]] std::string percentDecoded(std::string_view text);
/// Each byte that can't stand in a path for itself becomes a "%" and two digits. Slashes stay.
[[nodiscard]] std::string percentEncodedPath(std::string_view text);

}  // namespace Foundation::detail
