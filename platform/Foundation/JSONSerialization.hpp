#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/Foundation/Data.hpp"
#include "platform/Foundation/JSONEncoder.hpp"
#include "platform/Foundation/JSONValue.hpp"
#include "platform/Foundation/NSError.hpp"

namespace Foundation {

/// What became of reading JSON text: either the value or an error.
struct JSONReading {
  std::optional<JSONValue> value{};
  /// Domain `NSCocoaErrorDomain`, code `JSONSerialization::kReadCorrupt`; the description says what
  /// is wrong.
  std::optional<NSError> error{};
};

/// JSON text from values without a type, and back. The outermost value is a map or a list, both
/// ways.
///
/// Thread: any.
class JSONSerialization {
 public:
  static constexpr std::int64_t kReadCorrupt = 3840;
  static constexpr std::int64_t kWriteInvalid = 3852;

  /// Writes `object` as UTF-8 text without blanks, maps in the order of their keys, slashes
  /// escaped; a floating number without a fraction looks like an integer. Fails, with the code
  /// `kWriteInvalid`, for another outermost value, a number that is not finite, text that is not
  /// UTF-8, and more than `kDeepestJSON` lists and maps within each other.
  [[nodiscard]] static JSONEncoding data(const JSONValue& object);

  /// Reads the whole of `text`, which JSONReader.hpp describes. Fails for what is no JSON, for another
  /// outermost value, more than `kDeepestJSON` lists and maps within each other, and more text than
  /// can be read at once. Of two fields with one key the later one stays.
  [[nodiscard]] static JSONReading jsonObject(std::string_view text);
  [[nodiscard]] static JSONReading jsonObject(const Data& data) {
    return jsonObject(textInData(data));
  }
};

}  // namespace Foundation
