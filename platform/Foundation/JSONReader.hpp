#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Foundation/JSONNumber.hpp"

namespace Foundation {

/// What a JSON value is.
enum class JSONKind { null, boolean, number, text, list, object };

/// Lists and objects within each other that are read and written at most; the platform's own limit.
inline constexpr std::size_t kDeepestJSON = 512;
/// Bytes of JSON text that are read at most: a gigabyte.
inline constexpr std::size_t kLongestJSON = std::size_t{1} << 30U;

/// Reads JSON text value by value, without building anything from it.
///
/// The reader stands at a value, at first the outermost, until that is read, skipped or entered. In
/// a list or object, `nextElement` or `nextField` steps to the next value; when it says no, the
/// reader has left the list or object behind and whoever stood there goes on. The fields of an
/// object come in an order that only the reader knows; of a field that stands there twice, the
/// later one comes later, or alone.
///
///     while (reader.nextField()) {
///       if (reader.key() == "level") known = reader.readNumber(level);
///     }
///
/// Every function that reads says whether it could: a value of another kind stays where it is. What
/// was not read when the reader steps on is skipped, and checked. Text that is no JSON (RFC 8259,
/// strictly), at whatever place, or too long, is a `problem`: from then on nothing can be read.
///
/// The text is UTF-8, with or without a byte order mark before it. UTF-16 and UTF-32 are no JSON
/// here: they are for `decodeText` (StringEncoding.hpp) first.
/// Thread: one reader is used by one thread at a time.
class JSONReader {
 public:
  /// Copies `text`, or keeps what it makes of it.
  explicit JSONReader(std::string_view text);
  ~JSONReader();
  JSONReader(const JSONReader&) = delete;
  JSONReader& operator=(const JSONReader&) = delete;

  /// What kind of value the reader stands at; absent when there is a problem.
  [[nodiscard]] std::optional<JSONKind> kind();

  [[nodiscard]] bool readNull();
  [[nodiscard]] bool readBoolean(bool& value);
  [[nodiscard]] bool readNumber(JSONNumber& value);
  [[nodiscard]] bool readText(std::string& value);

  [[nodiscard]] bool enterList();
  [[nodiscard]] bool nextElement();
  [[nodiscard]] bool enterObject();
  [[nodiscard]] bool nextField();
  /// The key of the field that the reader is in. Valid until the object is left behind.
  [[nodiscard]] std::string_view key() const;

  /// Passes the value, whatever it is.
  bool skip();

  /// True when the outermost value was read and nothing stands behind it.
  [[nodiscard]] bool isAtEnd();

  /// Why the text is no JSON; empty as long as it may be some.
  [[nodiscard]] const std::string& problem() const;

 private:
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace Foundation
