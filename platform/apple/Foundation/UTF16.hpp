#pragma once

#include <string>
#include <string_view>

namespace Foundation {

/// The platform's texts are UTF-16, ours UTF-8. Byte order marks and NULs are characters like any
/// other here, which the platform's own conversions don't promise.
///
/// What is malformed becomes U+FFFD: a character's worth of bytes, an unpaired surrogate.

[[nodiscard]] std::u16string utf16FromUTF8(std::string_view text);
[[nodiscard]] std::string utf8FromUTF16(std::u16string_view text);

[[nodiscard]] constexpr bool isHighSurrogate(char32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
[[nodiscard]] constexpr bool isLowSurrogate(char32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}
/// `character` is one: no surrogate, and at most U+10FFFF.
void appendUTF8(std::string& text, char32_t character);

}  // namespace Foundation
