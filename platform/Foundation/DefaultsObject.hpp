#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "platform/Foundation/Data.hpp"
#include "platform/Foundation/Date.hpp"

namespace Foundation {

/// A value that the user defaults can hold: exactly one of eight kinds.
///
/// An immutable value once it is in a store, held by `DefaultsObjectPtr`.
/// Thread: a plain value.
class DefaultsObject {
 public:
  using List = std::vector<DefaultsObject>;
  using Map = std::map<std::string, DefaultsObject, std::less<>>;

  enum class Case { data, text, integer, floating, boolean, date, list, map };

  [[nodiscard]] static DefaultsObject data(Data value) { return make<0>(std::move(value)); }
  /// `value` is UTF-8.
  [[nodiscard]] static DefaultsObject text(std::string value) { return make<1>(std::move(value)); }
  [[nodiscard]] static DefaultsObject integer(std::int64_t value) { return make<2>(value); }
  [[nodiscard]] static DefaultsObject floating(double value) { return make<3>(value); }
  [[nodiscard]] static DefaultsObject boolean(bool value) { return make<4>(value); }
  [[nodiscard]] static DefaultsObject date(Date value) { return make<5>(value); }
  [[nodiscard]] static DefaultsObject list(List value) { return make<6>(std::move(value)); }
  /// The keys are UTF-8.
  [[nodiscard]] static DefaultsObject map(Map value) { return make<7>(std::move(value)); }

  [[nodiscard]] Case tag() const noexcept { return static_cast<Case>(value_.index()); }
  /// The payload of that case; null in every other.
  [[nodiscard]] const Data* asData() const noexcept { return std::get_if<0>(&value_); }
  [[nodiscard]] const std::string* asText() const noexcept { return std::get_if<1>(&value_); }
  [[nodiscard]] const std::int64_t* asInteger() const noexcept { return std::get_if<2>(&value_); }
  [[nodiscard]] const double* asFloating() const noexcept { return std::get_if<3>(&value_); }
  [[nodiscard]] const bool* asBoolean() const noexcept { return std::get_if<4>(&value_); }
  [[nodiscard]] const Date* asDate() const noexcept { return std::get_if<5>(&value_); }
  [[nodiscard]] const List* asList() const noexcept { return std::get_if<6>(&value_); }
  [[nodiscard]] const Map* asMap() const noexcept { return std::get_if<7>(&value_); }

  /// Calls `function` with the payload, of whatever kind; it answers the same type for all eight.
  template <class Function>
  decltype(auto) match(const Function& function) const {
    return visit<0>(function);
  }

  friend bool operator==(const DefaultsObject&, const DefaultsObject&) = default;

 private:
  using Union = std::variant<Data, std::string, std::int64_t, double, bool, Date, List, Map>;

  template <std::size_t I, class Value>
  [[nodiscard]] static DefaultsObject make(Value value) {
    return DefaultsObject(Union(std::in_place_index<I>, std::move(value)));
  }
  explicit DefaultsObject(Union value) : value_(std::move(value)) {}

  template <std::size_t I, class Function>
  decltype(auto) visit(const Function& function) const {
    if constexpr (I + 1 == std::variant_size_v<Union>) {
      return function(*std::get_if<I>(&value_));
    } else {
      if (const auto* payload = std::get_if<I>(&value_)) return function(*payload);
      return visit<I + 1>(function);
    }
  }

  Union value_;
};

static_assert(std::is_nothrow_move_constructible_v<DefaultsObject>,
              "a payload that throws when it is moved could leave the union without a value");

using DefaultsObjectPtr = std::shared_ptr<const DefaultsObject>;

}  // namespace Foundation
