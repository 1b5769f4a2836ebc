#pragma once

#include <concepts>
#include <limits>
#include <string>

#include "platform/Foundation/Base64.hpp"
#include "platform/Foundation/Data.hpp"
#include "platform/Foundation/Date.hpp"
#include "platform/Foundation/Decoder.hpp"
#include "platform/Foundation/Encoder.hpp"

/// Codable: truth values, numbers, text, dates and bytes. See Codable.hpp.

namespace Foundation {

namespace detail {

template <class T, class... Others>
concept OneOf = (std::same_as<T, Others> || ...);

/// The integers that are numbers: a `char` of whatever width is a character.
template <class T>
concept SignedInteger = OneOf<T, signed char, short, int, long, long long>;
template <class T>
concept UnsignedInteger =
    OneOf<T, unsigned char, unsigned short, unsigned, unsigned long, unsigned long long>;
template <class T>
concept FloatingNumber = OneOf<T, float, double>;

}  // namespace detail

template <>
struct Codable<bool> {
  static void encode(Encoder& encoder, bool value) { encoder.boolean(value); }
  static void decode(Decoder& decoder, bool& value) { decoder.boolean(value); }
};

template <detail::SignedInteger T>
struct Codable<T> {
  static void encode(Encoder& encoder, T value) { encoder.integer(value); }
  static void decode(Decoder& decoder, T& value) {
    std::int64_t number = 0;
    decoder.integer(number, std::numeric_limits<T>::min(), std::numeric_limits<T>::max());
    value = static_cast<T>(number);
  }
};

template <detail::UnsignedInteger T>
struct Codable<T> {
  static void encode(Encoder& encoder, T value) { encoder.unsignedInteger(value); }
  static void decode(Decoder& decoder, T& value) {
    std::uint64_t number = 0;
    decoder.unsignedInteger(number, std::numeric_limits<T>::max());
    value = static_cast<T>(number);
  }
};

template <>
struct Codable<double> {
  static void encode(Encoder& encoder, double value) { encoder.floating(value); }
  static void decode(Decoder& decoder, double& value) {
    decoder.floating(value, std::numeric_limits<double>::max());
  }
};

template <>
struct Codable<float> {
  static void encode(Encoder& encoder, float value) { encoder.floating(value); }
  static void decode(Decoder& decoder, float& value) {
    double number = 0;
    decoder.floating(number, std::numeric_limits<float>::max());
    if (!decoder.hasFailed()) value = static_cast<float>(number);
  }
};

template <>
struct Codable<std::string> {
  static void encode(Encoder& encoder, const std::string& value) { encoder.text(value); }
  static void decode(Decoder& decoder, std::string& value) { decoder.text(value); }
};

template <>
struct Codable<Date> {
  /// 1 January 2001 00:00:00 UTC, from which the platform's encoder counts, in `Date`'s seconds.
  static constexpr double kReferenceDate = 978307200;

  static void encode(Encoder& encoder, const Date& value) {
    encoder.floating(value.timeIntervalSince1970() - kReferenceDate);
  }
  static void decode(Decoder& decoder, Date& value) {
    double seconds = 0;
    decoder.floating(seconds, std::numeric_limits<double>::max());
    value = Date::sinceEpoch(seconds + kReferenceDate);
  }
};

template <>
struct Codable<Data> {
  static void encode(Encoder& encoder, const Data& value) { encoder.text(base64FromData(value)); }
  static void decode(Decoder& decoder, Data& value) {
    std::string text;
    decoder.text(text);
    auto data = dataFromBase64(text);
    if (!data) return decoder.fail("the text is not base 64");
    value = std::move(*data);
  }
};

}  // namespace Foundation
