#include "platform/Foundation/Base64.hpp"

#include <algorithm>
#include <cstdint>

namespace Foundation {

namespace {

constexpr std::string_view kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t kGroupBytes = 3;
constexpr std::size_t kGroupCharacters = 4;

// Up to three bytes, as the upper bits of 24.
std::uint32_t groupAt(const Data& data, std::size_t at) {
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < kGroupBytes; ++i) {
    const auto byte = at + i < data.size() ? data[at + i] : std::byte{0};
    bits = bits << 8U | std::to_integer<std::uint32_t>(byte);
  }
  return bits;
}

// Four characters as 24 bits, padding as zeros; absent when one of them is not in the alphabet.
std::optional<std::uint32_t> bitsOf(std::string_view group, std::size_t padding) {
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < kGroupCharacters; ++i) {
    const bool isPadding = i >= kGroupCharacters - padding;
    const auto digit = isPadding ? 0 : kAlphabet.find(group[i]);
    if (digit == std::string_view::npos) return std::nullopt;
    bits = bits << 6U | static_cast<std::uint32_t>(digit);
  }
  return bits;
}

std::size_t paddingOf(std::string_view text) {
  if (text.ends_with("==")) return 2;
  return text.ends_with('=') ? 1 : 0;
}

bool appendGroup(Data& data, std::string_view group, std::size_t padding) {
  const auto bits = bitsOf(group, padding);
  const auto unused = (1U << (8U * padding)) - 1;
  if (!bits || (*bits & unused) != 0) return false;
  for (std::size_t i = 0; i < kGroupBytes - padding; ++i) {
    data.push_back(static_cast<std::byte>(*bits >> (16U - 8U * i)));
  }
  return true;
}

}  // namespace

std::string base64FromData(const Data& data) {
  std::string text;
  text.reserve((data.size() + kGroupBytes - 1) / kGroupBytes * kGroupCharacters);
  for (std::size_t at = 0; at < data.size(); at += kGroupBytes) {
    const auto bits = groupAt(data, at);
    const auto digits = std::min(data.size() - at, kGroupBytes) + 1;
    for (std::size_t i = 0; i < digits; ++i) text += kAlphabet[bits >> (18U - 6U * i) & 63U];
    text.append(kGroupCharacters - digits, '=');
  }
  return text;
}

std::optional<Data> dataFromBase64(std::string_view text) {
  if (text.size() % kGroupCharacters != 0) return std::nullopt;
  Data data;
  data.reserve(text.size() / kGroupCharacters * kGroupBytes);
  for (std::size_t at = 0; at < text.size(); at += kGroupCharacters) {
    const bool isLast = at + kGroupCharacters == text.size();
    const auto group = text.substr(at, kGroupCharacters);
    if (!appendGroup(data, group, isLast ? paddingOf(group) : 0)) return std::nullopt;
  }
  return data;
}

}  // namespace Foundation
