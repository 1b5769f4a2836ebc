#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Foundation/CodingPath.hpp"

namespace Foundation {

template <class T>
struct Codable;

/// Takes a value apart into JSON text: what a codable type writes itself to.
///
/// Text is written as the platform's encoder writes it by default: no blanks, slashes escaped,
/// fields in the order in which they come. The first failure stays, with the path to the value;
/// what comes after it is ignored, so that nobody has to ask after each step.
/// Thread: one encoder is used by one thread at a time.
class Encoder {
 public:
  Encoder() = default;
  Encoder(const Encoder&) = delete;
  Encoder& operator=(const Encoder&) = delete;
  ~Encoder() = default;

  /// Writes a value of any codable type.
  template <class T>
  void value(const T& value) {
    if (!hasFailed()) Codable<T>::encode(*this, value);
  }

  void null();
  void boolean(bool value);
  void integer(std::int64_t value);
  void unsignedInteger(std::uint64_t value);
  /// Fails for what is not finite.
  void floating(double value);
  /// Fails for what is not UTF-8.
  void text(std::string_view value);

  /// Between these two, each value comes after a call of `nextElement`.
  void beginList();
  void nextElement();
  void endList();

  /// Between these two, each value comes after its key. `key` is not copied: it must live until the
  /// value is written.
  void beginObject();
  void key(std::string_view key);
  void endObject();

  /// Says why the value at hand cannot be written.
  void fail(std::string_view message);
  [[nodiscard]] bool hasFailed() const { return !failure_.empty(); }
  /// "players[2].score: nan is not a JSON number"; empty when all went well.
  [[nodiscard]] const std::string& failure() const { return failure_; }

  /// What was written so far.
  [[nodiscard]] const std::string& json() const { return json_; }

 private:
  bool enter(char bracket);
  void leave(char bracket);
  void appendText(std::string_view text);

  std::string json_;
  std::string failure_;
  CodingPath path_;
};

}  // namespace Foundation
