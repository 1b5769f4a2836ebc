#pragma once

#include <optional>
#include <string_view>

#include "platform/Foundation/Codable.hpp"
#include "platform/Foundation/Data.hpp"
#include "platform/Foundation/NSError.hpp"

namespace Foundation {

/// What became of a decoding: either the value or an error.
template <class T>
struct JSONDecoding {
  std::optional<T> value{};
  /// Domain `NSCocoaErrorDomain`, code `JSONDecoder::kCorrupt`; the description says where and
  /// what: "players[2].level: expected an integer, found text".
  std::optional<NSError> error{};
};

namespace detail {

/// Calls `decode` and turns whatever is thrown into an error.
[[nodiscard]] std::optional<NSError> decodeGuarded(std::string_view json, void* value,
                                                   void (*decode)(Decoder& decoder, void* value));

}  // namespace detail

/// Reads values of codable types from JSON text, straight into their members.
///
/// The text is checked to its end, whatever of it is used. Nothing is thrown: a conversion that
/// throws makes the decoding fail.
/// Thread: any.
class JSONDecoder {
 public:
  static constexpr std::int64_t kCorrupt = 4864;

  template <CodableType T>
  [[nodiscard]] JSONDecoding<T> decode(std::string_view json) const {
    JSONDecoding<T> result;
    result.error = detail::decodeGuarded(json, &result.value, [](Decoder& decoder, void* erased) {
      decoder.value(static_cast<std::optional<T>*>(erased)->emplace());
    });
    if (result.error) result.value.reset();
    return result;
  }

  template <CodableType T>
  [[nodiscard]] JSONDecoding<T> decode(const Data& json) const {
    return decode<T>(textInData(json));
  }
};

}  // namespace Foundation
