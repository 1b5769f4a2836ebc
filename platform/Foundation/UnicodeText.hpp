#pragma once

#include <string>
#include <string_view>

namespace Foundation {

/// True for well-formed UTF-8: no stray or missing continuation bytes, no overlong forms, no
/// surrogates, nothing beyond U+10FFFF. A NUL is a character like any other.
[[nodiscard]] bool isUTF8(std::string_view text);

/// The text behind the byte order mark that some programs put before UTF-8; all of it when there is
/// none.
[[nodiscard]] inline std::string_view withoutMark(std::string_view text) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (text.substr(0, kMark.size()) == kMark) text.remove_prefix(kMark.size());
  return text;
}

/// The text in lower case, by Unicode's full mappings and no language's own rules: "İ" becomes an
/// "i" and a combining dot, the Kelvin sign a plain "k". Bytes that are no UTF-8 become U+FFFD.
///
/// Thread: any.
[[nodiscard]] std::string lowercased(std::string_view text);

}  // namespace Foundation
