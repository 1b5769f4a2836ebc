#include "platform/apple/Foundation/UTF16.hpp"

#include <array>
#include <cstddef>

#include "platform/Foundation/UnicodeText.hpp"

namespace Foundation {

namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kFirstBeyondOneUnit = 0x10000;

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80; }

// Bytes of the character at the front, as far as they are there.
std::size_t lengthOfFirst(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t promised = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  std::size_t length = 1;
  while (length < promised && length < text.size() && isContinuation(text[length])) ++length;
  return length;
}

char32_t decoded(std::string_view character) {
  if (!isUTF8(character)) return kReplacement;
  const auto lead = static_cast<unsigned char>(character.front());
  if (character.size() == 1) return lead;
  char32_t value = lead & (0x7FU >> character.size());
  for (const char byte : character.substr(1)) {
    value = (value << 6U) | (static_cast<unsigned char>(byte) & 0x3FU);
  }
  return value;
}

void append(std::u16string& text, char32_t character) {
  if (character < kFirstBeyondOneUnit) {
    text += static_cast<char16_t>(character);
    return;
  }
  const char32_t offset = character - kFirstBeyondOneUnit;
  text += static_cast<char16_t>(0xD800 + (offset >> 10U));
  text += static_cast<char16_t>(0xDC00 + (offset & 0x3FFU));
}

}  // namespace

void appendUTF8(std::string& text, char32_t character) {
  if (character < 0x80) {
    text += static_cast<char>(character);
    return;
  }
  constexpr std::array<unsigned, 4> kLeads = {0, 0xC0, 0xE0, 0xF0};
  const unsigned following = character < 0x800 ? 1 : character < kFirstBeyondOneUnit ? 2 : 3;
  text += static_cast<char>(kLeads.at(following) | (character >> (6 * following)));
  for (unsigned left = following; left-- > 0;) {
    text += static_cast<char>(0x80U | ((character >> (6 * left)) & 0x3FU));
  }
}

std::u16string utf16FromUTF8(std::string_view text) {
  std::u16string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const auto length = lengthOfFirst(text);
    append(result, decoded(text.substr(0, length)));
    text.remove_prefix(length);
  }
  return result;
}

std::string utf8FromUTF16(std::u16string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t character = text[i];
    if (isHighSurrogate(character) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) {
      const char32_t low = text[++i];
      character = kFirstBeyondOneUnit + ((character - 0xD800) << 10U) + (low - 0xDC00);
    } else if (isHighSurrogate(character) || isLowSurrogate(character)) {
      character = kReplacement;
    }
    appendUTF8(result, character);
  }
  return result;
}

}  // namespace Foundation
