#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "platform/Foundation/Decoder.hpp"
#include "platform/Foundation/Encoder.hpp"

/// Codable: enums that name their cases, in their own namespace, in one of two forms.
///
///     enum class Rank { novice, knight };
///     constexpr auto codableCases(Rank) {
///       return Foundation::codedAsText<Rank>({{Rank::novice, "novice"}, {Rank::knight,
///       "knight"}});
///     }
///
///     enum class Door { shut = 0, open = 5 };
///     constexpr auto codableCases(Door) { return Foundation::codedAsNumber({Door::shut,
///     Door::open}); }
///
/// An enum inside a class says it with a friend function. A value that is not among the cases can
/// be neither encoded nor decoded.

namespace Foundation {

template <class Enum>
struct CodableCase {
  Enum value{};
  std::string_view text{};
};

/// The cases of an enum and the text of each.
template <class Enum, std::size_t kCount>
struct CasesAsText {
  std::array<CodableCase<Enum>, kCount> cases{};

  void encode(Encoder& encoder, Enum value) const {
    for (const auto& one : cases) {
      if (one.value == value) return encoder.text(one.text);
    }
    encoder.fail("the value is none of the enum's cases");
  }
  void decode(Decoder& decoder, Enum& value) const {
    std::string text;
    decoder.text(text);
    for (const auto& one : cases) {
      if (one.text == text) return void(value = one.value);
    }
    decoder.fail("\"" + text + "\" is none of the enum's cases");
  }
};

/// The cases of an enum, each coded as its own number.
template <class Enum, std::size_t kCount>
struct CasesAsNumber {
  using Number = std::conditional_t<std::is_signed_v<std::underlying_type_t<Enum>>, std::int64_t,
                                    std::uint64_t>;
  std::array<Enum, kCount> cases{};

  void encode(Encoder& encoder, Enum value) const {
    for (const auto one : cases) {
      if (one == value) return encoder.value(static_cast<Number>(value));
    }
    encoder.fail("the value is none of the enum's cases");
  }
  void decode(Decoder& decoder, Enum& value) const {
    Number number = 0;
    decoder.value(number);
    for (const auto one : cases) {
      if (static_cast<Number>(one) == number) return void(value = one);
    }
    decoder.fail(std::to_string(number) + " is none of the enum's cases");
  }
};

template <class Enum, std::size_t kCount>
[[nodiscard]] constexpr auto codedAsText(const CodableCase<Enum> (&cases)[kCount]) {
  CasesAsText<Enum, kCount> result;
  for (std::size_t i = 0; i < kCount; ++i) result.cases[i] = cases[i];
  return result;
}

template <class Enum, std::size_t kCount>
[[nodiscard]] constexpr auto codedAsNumber(const Enum (&cases)[kCount]) {
  CasesAsNumber<Enum, kCount> result;
  for (std::size_t i = 0; i < kCount; ++i) result.cases[i] = cases[i];
  return result;
}

template <class T>
  requires std::is_enum_v<T> && requires(T value) { codableCases(value); }
struct Codable<T> {
  static void encode(Encoder& encoder, T value) { codableCases(value).encode(encoder, value); }
  static void decode(Decoder& decoder, T& value) { codableCases(T{}).decode(decoder, value); }
};

}  // namespace Foundation
