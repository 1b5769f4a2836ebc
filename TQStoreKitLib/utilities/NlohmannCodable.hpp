#pragma once

#include <nlohmann/json.hpp>

#include <concepts>
#include <cstdint>
#include <exception>
#include <map>
#include <optional>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <variant>
#include <vector>

#include "platform/Foundation/Codable.hpp"

/// Makes every type codable that nlohmann/json converts (`to_json` and `from_json`, its macros, or
/// its serialiser), unless it is codable already. For types that have these conversions anyway: a
/// JSON value stands between the text and the type. Nothing else includes this header, which needs
/// nlohmann/json; include it wherever such a type is used with the user defaults or a coder.
///
/// A conversion that throws fails, with the path to the value and the exception's message.

namespace Foundation {

namespace detail {

template <class T>
concept HasNlohmannConversions = requires(nlohmann::json& json, const T& constant, T& variable) {
  nlohmann::adl_serializer<T>::to_json(json, constant);
  nlohmann::adl_serializer<T>::from_json(json, variable);
};

template <class T>
inline constexpr bool kIsCodableByItself = false;
template <class T>
  requires std::is_arithmetic_v<T> || OneOf<T, std::string, Date, Data> || HasCodableFields<T>
inline constexpr bool kIsCodableByItself<T> = true;
template <class T>
  requires std::is_enum_v<T> && requires(T value) { codableCases(value); }
inline constexpr bool kIsCodableByItself<T> = true;
template <class T>
inline constexpr bool kIsCodableByItself<std::optional<T>> = true;
template <class T, class Allocator>
  requires(!std::same_as<T, std::byte>)
inline constexpr bool kIsCodableByItself<std::vector<T, Allocator>> = true;
template <class T, class Order, class Allocator>
inline constexpr bool kIsCodableByItself<std::map<std::string, T, Order, Allocator>> = true;
template <class T, class Hash, class Equal, class Allocator>
inline constexpr bool
    kIsCodableByItself<std::unordered_map<std::string, T, Hash, Equal, Allocator>> = true;

inline void encodeNlohmann(Encoder& encoder, const nlohmann::json& json) {
  if (encoder.hasFailed()) return;
  using Kind = nlohmann::json::value_t;
  switch (json.type()) {
    case Kind::null:
      return encoder.null();
    case Kind::boolean:
      return encoder.boolean(json.get<bool>());
    case Kind::number_integer:
      return encoder.integer(json.get<std::int64_t>());
    case Kind::number_unsigned:
      return encoder.unsignedInteger(json.get<std::uint64_t>());
    case Kind::number_float:
      return encoder.floating(json.get<double>());
    case Kind::string:
      return encoder.text(json.get_ref<const std::string&>());
    case Kind::array:
      encoder.beginList();
      for (const auto& element : json) {
        encoder.nextElement();
        encodeNlohmann(encoder, element);
      }
      return encoder.endList();
    case Kind::object:
      encoder.beginObject();
      for (const auto& [key, value] : json.items()) {
        encoder.key(key);
        encodeNlohmann(encoder, value);
      }
      return encoder.endObject();
    case Kind::binary:
    case Kind::discarded:
      break;
  }
  encoder.fail("the value is none that JSON has");
}

inline nlohmann::json decodeNlohmannNumber(Decoder& decoder) {
  JSONNumber number;
  decoder.number(number);
  if (const auto* const value = std::get_if<std::int64_t>(&number)) return *value;
  if (const auto* const value = std::get_if<std::uint64_t>(&number)) return *value;
  return *std::get_if<double>(&number);
}

template <class T>
nlohmann::json decodeAs(Decoder& decoder) {
  T value{};
  decoder.value(value);
  return value;
}

inline nlohmann::json decodeNlohmann(Decoder& decoder) {
  nlohmann::json json;
  switch (decoder.kind()) {
    case JSONKind::null:
      (void)decoder.takeNull();
      return json;
    case JSONKind::boolean:
      return decodeAs<bool>(decoder);
    case JSONKind::number:
      return decodeNlohmannNumber(decoder);
    case JSONKind::text:
      return decodeAs<std::string>(decoder);
    case JSONKind::list:
      json = nlohmann::json::array();
      for (decoder.beginList(); decoder.nextElement();) json.push_back(decodeNlohmann(decoder));
      return json;
    case JSONKind::object:
      json = nlohmann::json::object();
      for (decoder.beginObject(); decoder.nextField();) {
        const std::string key(decoder.key());
        json[key] = decodeNlohmann(decoder);
      }
      return json;
  }
  return json;
}

}  // namespace detail

template <class T>
  requires detail::HasNlohmannConversions<T> && (!detail::kIsCodableByItself<T>)
struct Codable<T> {
  static void encode(Encoder& encoder, const T& value) {
    nlohmann::json json;
    try {
      nlohmann::adl_serializer<T>::to_json(json, value);
    } catch (const std::exception& exception) {
      return encoder.fail(exception.what());
    }
    detail::encodeNlohmann(encoder, json);
  }
  static void decode(Decoder& decoder, T& value) {
    const auto json = detail::decodeNlohmann(decoder);
    if (decoder.hasFailed()) return;
    try {
      nlohmann::adl_serializer<T>::from_json(json, value);
    } catch (const std::exception& exception) {
      decoder.fail(exception.what());
    }
  }
};

}  // namespace Foundation
