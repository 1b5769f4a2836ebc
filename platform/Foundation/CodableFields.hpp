#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/Foundation/Decoder.hpp"
#include "platform/Foundation/Encoder.hpp"

/// Codable: types that say their fields. See Codable.hpp.

namespace Foundation {

namespace detail {

template <class T>
inline constexpr bool kIsOptional = false;
template <class T>
inline constexpr bool kIsOptional<std::optional<T>> = true;

}  // namespace detail

/// The coder that writes fields.
class FieldEncoder {
 public:
  explicit FieldEncoder(Encoder& encoder) : encoder_(encoder) {}

  /// An optional member that is absent is left out.
  template <class Member>
  FieldEncoder& operator()(std::string_view key, const Member& member) {
    if constexpr (detail::kIsOptional<Member>) {
      if (!member) return *this;
    }
    encoder_.key(key);
    encoder_.value(member);
    return *this;
  }

 private:
  Encoder& encoder_;
};

/// The coder that reads fields.
///
/// The fields come in the order of the text, the members in that of the type. A pass over the
/// members takes as many fields as it can; what is in another order takes another pass, and a field
/// that a whole pass did not take belongs to nobody. A last pass finds what is missing.
class FieldDecoder {
 public:
  explicit FieldDecoder(Decoder& decoder);

  template <class Member>
  FieldDecoder& operator()(std::string_view key, Member& member) {
    const auto index = member_++;
    if (isAtField_) {
      if (decoder_.key() == key) take(index, member);
    } else if (isLastPass_ && !wasTaken(index)) {
      miss(key, member);
    }
    return *this;
  }

  /// Begins a pass; false when none is needed any more.
  [[nodiscard]] bool beginPass();

 private:
  template <class Member>
  void take(std::size_t index, Member& member) {
    decoder_.value(member);
    markTaken(index);
    isAtField_ = decoder_.nextField();
  }
  template <class Member>
  void miss(std::string_view key, Member& member) {
    if constexpr (detail::kIsOptional<Member>) {
      member.reset();
    } else {
      decoder_.failMissing(key);
    }
  }
  void markTaken(std::size_t index);
  [[nodiscard]] bool wasTaken(std::size_t index) const;

  Decoder& decoder_;
  std::size_t member_ = 0;
  std::size_t takenCount_ = 0;
  std::size_t takenBefore_ = 0;
  std::uint64_t taken_ = 0;          // the first 64 members
  std::vector<bool> takenBeyond_{};  // all others
  bool isAtField_ = false;
  bool isFirstPass_ = true;
  bool isLastPass_ = false;
};

template <class T>
concept HasCodableFields = requires(FieldEncoder& encoder, FieldDecoder& decoder, T& value) {
  codableFields(encoder, value);
  codableFields(decoder, value);
};

template <HasCodableFields T>
struct Codable<T> {
  static void encode(Encoder& encoder, const T& value) {
    FieldEncoder fields(encoder);
    encoder.beginObject();
    codableFields(fields, const_cast<T&>(value));  // one function serves both ways; this one reads
    encoder.endObject();
  }
  static void decode(Decoder& decoder, T& value) {
    decoder.beginObject();
    FieldDecoder fields(decoder);
    while (fields.beginPass()) codableFields(fields, value);
  }
};

}  // namespace Foundation
