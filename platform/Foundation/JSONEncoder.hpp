#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "platform/Foundation/Codable.hpp"
#include "platform/Foundation/Data.hpp"
#include "platform/Foundation/NSError.hpp"

namespace Foundation {

/// The domain of the errors of the platform's coders, among others.
inline constexpr std::string_view NSCocoaErrorDomain = "NSCocoaErrorDomain";

/// What became of an encoding: either the text or an error.
struct JSONEncoding {
  /// UTF-8 JSON text.
  std::optional<Data> data{};
  /// Domain `NSCocoaErrorDomain`, code `JSONEncoder::kInvalidValue`; the description says where and
  /// what: "players[2].score: nan is not a JSON number".
  std::optional<NSError> error{};
};

namespace detail {

/// Calls `encode` and turns whatever is thrown into an error.
[[nodiscard]] JSONEncoding encodeGuarded(const void* value,
                                         void (*encode)(Encoder& encoder, const void* value));

}  // namespace detail

/// Writes values of codable types as JSON text, as the platform's encoder does by default.
///
/// Any value can be the outermost one, also a lone null, text or number. Nothing is thrown: a
/// conversion that throws makes the encoding fail.
/// Thread: any.
class JSONEncoder {
 public:
  static constexpr std::int64_t kInvalidValue = 4866;

  template <CodableType T>
  [[nodiscard]] JSONEncoding encode(const T& value) const {
    return detail::encodeGuarded(std::addressof(value), [](Encoder& encoder, const void* erased) {
      encoder.value(*static_cast<const T*>(erased));
    });
  }
};

}  // namespace Foundation
