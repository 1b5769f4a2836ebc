#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/Foundation/Data.hpp"

namespace Foundation {

/// How text is written as bytes. The platform's names and numbers; it may know others, which any
/// number of this type can say.
enum NSStringEncoding : std::uint64_t {
  NSASCIIStringEncoding = 1,
  NSJapaneseEUCStringEncoding = 3,
  NSUTF8StringEncoding = 4,
  NSISOLatin1StringEncoding = 5,
  NSShiftJISStringEncoding = 8,
  NSISOLatin2StringEncoding = 9,
  /// UTF-16 in the byte order that its mark says; without a mark, big endian.
  NSUTF16StringEncoding = 10,
  NSUnicodeStringEncoding = NSUTF16StringEncoding,
  NSWindowsCP1251StringEncoding = 11,
  NSWindowsCP1252StringEncoding = 12,
  NSWindowsCP1253StringEncoding = 13,
  NSWindowsCP1254StringEncoding = 14,
  NSWindowsCP1250StringEncoding = 15,
  NSISO2022JPStringEncoding = 21,
  NSMacOSRomanStringEncoding = 30,
  NSUTF16BigEndianStringEncoding = 0x90000100,
  NSUTF16LittleEndianStringEncoding = 0x94000100,
  /// UTF-32 in the byte order that its mark says; without a mark, big endian.
  NSUTF32StringEncoding = 0x8c000100,
  NSUTF32BigEndianStringEncoding = 0x98000100,
  NSUTF32LittleEndianStringEncoding = 0x9c000100,
};

/// The platform's name of an encoding for people: "Unicode (UTF-8)". Of one that is not known, its
/// number.
///
/// Thread: any.
[[nodiscard]] std::string localizedName(NSStringEncoding encoding);

/// The text that `bytes` say in that encoding, as UTF-8. Absent when there is a byte or a sequence
/// that the encoding doesn't have, a character is cut off at the end, or the encoding is not known;
/// nothing is replaced. No bytes are the empty text, in any encoding that is known.
///
/// Thread: any.
[[nodiscard]] std::optional<std::string> decodeText(const Data& bytes, NSStringEncoding encoding);

}  // namespace Foundation
