#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Foundation/CodingPath.hpp"
#include "platform/Foundation/JSONReader.hpp"

namespace Foundation {

template <class T>
struct Codable;

/// Puts a value together from JSON text: what a codable type reads itself from.
///
/// The first failure stays, with the path to the value; from then on nothing is read, every list
/// and object is at its end, and nobody has to ask after each step.
/// Thread: one decoder is used by one thread at a time.
class Decoder {
 public:
  /// `reader` outlives this object.
  explicit Decoder(JSONReader& reader) : reader_(reader) {}
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;
  ~Decoder() = default;

  /// Reads a value of any codable type. After a failure `value` is valid and means nothing.
  template <class T>
  void value(T& value) {
    if (!hasFailed()) Codable<T>::decode(*this, value);
  }

  /// What comes next; null after a failure.
  [[nodiscard]] JSONKind kind();

  /// Passes a null, if that is what comes next.
  [[nodiscard]] bool takeNull();
  void boolean(bool& value);
  /// Any number, as it is written.
  void number(JSONNumber& value);
  /// Any notation of an integer counts, "3.0" and "3e2" too. Fails outside of `lowest` to
  /// `highest`.
  void integer(std::int64_t& value, std::int64_t lowest = INT64_MIN,
               std::int64_t highest = INT64_MAX);
  void unsignedInteger(std::uint64_t& value, std::uint64_t highest = UINT64_MAX);
  /// Fails beyond `highest` on either side of zero.
  void floating(double& value, double highest);
  void text(std::string& value);

  ///     for (decoder.beginList(); decoder.nextElement();) decoder.value(list.emplace_back());
  void beginList();
  [[nodiscard]] bool nextElement();

  ///     for (decoder.beginObject(); decoder.nextField();) decoder.value(map[decoder.key()]);
  void beginObject();
  [[nodiscard]] bool nextField();
  /// Valid until the object is at its end.
  [[nodiscard]] std::string_view key() const { return reader_.key(); }
  /// Passes the field's value.
  void skip();

  /// Says what is wrong with the value at hand.
  void fail(std::string_view message);
  /// Says that the object that just ended has no field `key`.
  void failMissing(std::string_view key);
  /// Fails when something stands behind the outermost value.
  void finish();
  [[nodiscard]] bool hasFailed() const { return !failure_.empty(); }
  /// "players[2].level: expected an integer, found text"; empty when all went well.
  [[nodiscard]] const std::string& failure() const { return failure_; }

 private:
  // What can't be read is looked at only then: most values are what they are taken for.
  bool expect(bool wasRead, std::string_view name) { return wasRead || failMismatch(name); }
  bool failMismatch(std::string_view expected);
  bool check(bool wasRead, std::string_view message);
  bool step(bool isAtValue);

  JSONReader& reader_;
  std::string failure_;
  CodingPath path_;
};

}  // namespace Foundation
