#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "platform/Foundation/JSONNumber.hpp"

namespace Foundation {

/// A JSON value of whatever kind: for what has no type of its own.
///
/// It is made from what is at hand, so that a tree reads like the text that it stands for:
///
///     JSONValue::Map{{"name", "Ada"}, {"level", 3}, {"tags", JSONValue::List{"a", nullptr, true}}}
///
/// An integer of up to 64 bits, with sign or without, stays exactly what it is. Two values are
/// equal when they are of the same kind and say the same; 1 is thus not 1.0.
/// Thread: a plain value.
class JSONValue {
 public:
  using List = std::vector<JSONValue>;
  using Map = std::map<std::string, JSONValue, std::less<>>;

  /// `unsignedInteger` is for what is too large for `integer`, and nothing else.
  enum class Case { null, boolean, integer, unsignedInteger, floating, text, list, map };

  JSONValue() noexcept = default;
  JSONValue(std::nullptr_t) noexcept {}
  /// Text is UTF-8.
  JSONValue(std::string text) : value_(std::in_place_index<5>, std::move(text)) {}
  JSONValue(std::string_view text) : JSONValue(std::string(text)) {}
  JSONValue(const char* text) : JSONValue(std::string(text)) {}
  JSONValue(List list) : value_(std::in_place_index<6>, std::move(list)) {}
  JSONValue(Map map) : value_(std::in_place_index<7>, std::move(map)) {}
  JSONValue(const JSONNumber& number);

  /// A boolean, or a number of any type; a lone character is neither.
  template <class T>
    requires(std::is_arithmetic_v<T> && !std::is_same_v<T, char>)
  JSONValue(T value) : value_(unionOf(value)) {}

  [[nodiscard]] Case tag() const noexcept { return static_cast<Case>(value_.index()); }
  [[nodiscard]] bool isNull() const noexcept { return value_.index() == 0; }
  /// The payload of that case; null in every other.
  [[nodiscard]] const bool* asBoolean() const noexcept { return std::get_if<1>(&value_); }
  [[nodiscard]] const std::int64_t* asInteger() const noexcept { return std::get_if<2>(&value_); }
  [[nodiscard]] const std::uint64_t* asUnsignedInteger() const noexcept {
    return std::get_if<3>(&value_);
  }
  [[nodiscard]] const double* asFloating() const noexcept { return std::get_if<4>(&value_); }
  [[nodiscard]] const std::string* asText() const noexcept { return std::get_if<5>(&value_); }
  [[nodiscard]] const List* asList() const noexcept { return std::get_if<6>(&value_); }
  [[nodiscard]] const Map* asMap() const noexcept { return std::get_if<7>(&value_); }

  /// The number, of whichever of the three cases; absent in every other. See `fits`, `doubleOf`.
  [[nodiscard]] std::optional<JSONNumber> number() const;

  /// The value under `key`; null when there is none, or this is no map. Valid as long as this
  /// object stays as it is.
  [[nodiscard]] const JSONValue* find(std::string_view key) const;

  friend bool operator==(const JSONValue&, const JSONValue&) = default;

 private:
  using Union = std::variant<std::nullptr_t, bool, std::int64_t, std::uint64_t, double, std::string,
                             List, Map>;

  template <class T>
  [[nodiscard]] static Union unionOf(T value) {
    if constexpr (std::is_same_v<T, bool>) {
      return Union(std::in_place_index<1>, value);
    } else if constexpr (std::is_floating_point_v<T>) {
      return Union(std::in_place_index<4>, static_cast<double>(value));
    } else if constexpr (std::is_signed_v<T>) {
      return Union(std::in_place_index<2>, value);
    } else {
      return unionOfUnsigned(value);
    }
  }
  [[nodiscard]] static Union unionOfUnsigned(std::uint64_t value);

  Union value_{std::in_place_index<0>, nullptr};
};

static_assert(std::is_nothrow_move_constructible_v<JSONValue>,
              "a payload that throws when it is moved could leave the union without a value");

}  // namespace Foundation
