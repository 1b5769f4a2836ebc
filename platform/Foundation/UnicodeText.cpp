#include "platform/Foundation/UnicodeText.hpp"

#include <cstddef>

namespace Foundation {

namespace {

// What a lead byte asks for: how many bytes follow, and the range of the first of these. The ranges
// keep overlong forms, surrogates and too large values out.
struct Lead {
  std::size_t following;
  unsigned char lowest = 0x80;
  unsigned char highest = 0xBF;
};

constexpr std::size_t kNoLead = 4;

Lead leadOf(unsigned char byte) {
  if (byte < 0x80) return {0};
  if (byte >= 0xC2 && byte <= 0xDF) return {1};
  if (byte == 0xE0) return {2, 0xA0};
  if (byte == 0xED) return {2, 0x80, 0x9F};
  if (byte >= 0xE1 && byte <= 0xEF) return {2};
  if (byte == 0xF0) return {3, 0x90};
  if (byte >= 0xF1 && byte <= 0xF3) return {3};
  if (byte == 0xF4) return {3, 0x80, 0x8F};
  return {kNoLead};
}

}  // namespace

bool isUTF8(std::string_view text) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto lead = leadOf(static_cast<unsigned char>(text[at]));
    if (lead.following == kNoLead || lead.following >= text.size() - at) return false;
    for (std::size_t i = 1; i <= lead.following; ++i) {
      const auto byte = static_cast<unsigned char>(text[at + i]);
      const bool isFirst = i == 1;
      if (byte < (isFirst ? lead.lowest : 0x80) || byte > (isFirst ? lead.highest : 0xBF)) {
        return false;
      }
    }
    at += lead.following;
  }
  return true;
}

}  // namespace Foundation
