#include "platform/Foundation/JSONValue.hpp"

namespace Foundation {

JSONValue::JSONValue(const JSONNumber& number) {
  if (const auto* const integer = std::get_if<std::int64_t>(&number)) {
    value_ = unionOf(*integer);
  } else if (const auto* const large = std::get_if<std::uint64_t>(&number)) {
    value_ = unionOf(*large);
  } else {
    value_ = unionOf(doubleOf(number));
  }
}

JSONValue::Union JSONValue::unionOfUnsigned(std::uint64_t value) {
  if (value > static_cast<std::uint64_t>(INT64_MAX)) return Union(std::in_place_index<3>, value);
  return Union(std::in_place_index<2>, static_cast<std::int64_t>(value));
}

std::optional<JSONNumber> JSONValue::number() const {
  if (const auto* const value = asInteger()) return JSONNumber(*value);
  if (const auto* const value = asUnsignedInteger()) return JSONNumber(*value);
  if (const auto* const value = asFloating()) return JSONNumber(*value);
  return std::nullopt;
}

const JSONValue* JSONValue::find(std::string_view key) const {
  const auto* const map = asMap();
  if (map == nullptr) return nullptr;
  const auto entry = map->find(key);
  return entry == map->end() ? nullptr : &entry->second;
}

}  // namespace Foundation
