#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace Foundation {

/// A run of bytes, as the platform's byte blobs are.
using Data = std::vector<std::byte>;

/// The bytes of `text`.
[[nodiscard]] inline Data dataFromText(std::string_view text) {
  const auto* const bytes = reinterpret_cast<const std::byte*>(text.data());
  return {bytes, bytes + text.size()};
}

/// The bytes of `data` seen as text, whatever they are; valid as long as `data` stays as it is.
[[nodiscard]] inline std::string_view textInData(const Data& data) {
  return {reinterpret_cast<const char*>(data.data()), data.size()};
}

}  // namespace Foundation
