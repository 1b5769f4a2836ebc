#include "platform/embedded/store/configuration/ConfigurationValue.hpp"

#include <algorithm>

namespace StoreKit::detail {

using Value = ConfigurationValue;

namespace {

// The children come in the order of the text, so the one that holds `target` is the last that does
// not begin after it.
template <typename Children, typename Order>
std::size_t indexOfHolder(const Children& children, const Value& target, Order orderOf) {
  const auto after = std::upper_bound(
      children.begin(), children.end(), target.order,
      [&](std::uint32_t order, const auto& child) { return order < orderOf(child); });
  return static_cast<std::size_t>(after - children.begin()) - 1;
}

std::string escaped(std::string_view key) {
  std::string result;
  for (const char c : key) {
    if (c == '~' || c == '/') {
      result += c == '~' ? "~0" : "~1";
    } else {
      result += c;
    }
  }
  return result;
}

}  // namespace

const ConfigurationValue* findMember(const ConfigurationValue& object, std::string_view key) {
  const auto* members = std::get_if<Value::Object>(&object.content);
  if (members == nullptr) return nullptr;
  const auto found = std::find_if(members->begin(), members->end(),
                                  [&](const Value::Member& member) { return member.key == key; });
  return found == members->end() ? nullptr : &found->value;
}

std::string pointerTo(const ConfigurationValue& root, const ConfigurationValue& target) {
  std::string pointer;
  for (const Value* at = &root; at->order < target.order;) {
    if (const auto* list = std::get_if<Value::Array>(&at->content)) {
      const auto index = indexOfHolder(*list, target, [](const Value& v) { return v.order; });
      pointer += "/" + std::to_string(index);
      at = &(*list)[index];
    } else if (const auto* object = std::get_if<Value::Object>(&at->content)) {
      const auto index =
          indexOfHolder(*object, target, [](const Value::Member& m) { return m.value.order; });
      pointer += "/" + escaped((*object)[index].key);
      at = &(*object)[index].value;
    } else {
      break;
    }
  }
  return pointer;
}

std::string mismatch(std::string_view expected, const ConfigurationValue& found) {
  constexpr std::string_view kKinds[] = {"null",   "true or false", "a number",
                                         "a text", "a list",        "an object"};
  const bool isNumber = std::holds_alternative<Value::Number>(found.content);
  const auto kind = isNumber && expected == "a whole number" ? std::string_view("another number")
                                                             : kKinds[found.content.index()];
  return "expected " + std::string(expected) + ", found " + std::string(kind);
}

}  // namespace StoreKit::detail
