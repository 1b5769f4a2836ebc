#include "platform/apple/Foundation/DefaultsBridging.hpp"

#include <string_view>
#include <utility>

#include "platform/Foundation/JSONReader.hpp"
#include "platform/Foundation/UnicodeText.hpp"
#include "platform/apple/Foundation/Bridging.hpp"

namespace Foundation {

namespace {

using Object = DefaultsObject;

std::optional<Object> objectOfNumber(NSNumber* native) {
  const auto number = numberFrom(native);
  if (!number) return Object::floating([native doubleValue]);
  if (const auto* const truth = std::get_if<bool>(&*number)) return Object::boolean(*truth);
  if (const auto* const integer = std::get_if<std::int64_t>(&*number)) {
    return Object::integer(*integer);
  }
  return Object::floating([native doubleValue]);
}

Object objectOfList(NSArray* native) {
  Object::List list;
  for (id element in native) {
    if (auto object = defaultsObjectFrom(element)) list.push_back(std::move(*object));
  }
  return Object::list(std::move(list));
}

Object objectOfMap(NSDictionary* native) {
  Object::Map map;
  for (id key in native) {
    auto* const name = as<NSString>(key);
    auto object = defaultsObjectFrom([native objectForKey:key]);
    if (name != nil && object) map.emplace(textFrom(name), std::move(*object));
  }
  return Object::map(std::move(map));
}

id native(const Data& data) { return nativeData(data); }
id native(const std::string& text) { return nativeText(text); }
id native(std::int64_t integer) { return nativeNumber(integer); }
id native(double number) { return nativeNumber(number); }
id native(bool truth) { return nativeNumber(truth); }
id native(const Date& date) { return nativeDate(date); }
id native(const Object::List& list) { return nativeList(list, nativeDefaultsObject); }
id native(const Object::Map& map) {
  NSMutableDictionary* const dictionary = [NSMutableDictionary dictionary];
  for (const auto& [key, object] : map) {
    [dictionary setObject:nativeDefaultsObject(object) forKey:nativeText(key)];
  }
  return dictionary;
}

std::string problemWithin(const Object& object, std::size_t depth);

std::string problemOf(const std::string& text) {
  return isUTF8(text) ? "" : "a text in it is not UTF-8";
}

std::string problemIn(const Object& object, std::size_t depth) {
  if (const auto* const text = object.asText()) return problemOf(*text);
  if (const auto* const list = object.asList()) {
    for (const auto& element : *list) {
      if (auto problem = problemWithin(element, depth); !problem.empty()) return problem;
    }
  }
  if (const auto* const map = object.asMap()) {
    for (const auto& [key, value] : *map) {
      auto problem = problemOf(key);
      if (problem.empty()) problem = problemWithin(value, depth);
      if (!problem.empty()) return problem;
    }
  }
  return {};
}

std::string problemWithin(const Object& object, std::size_t depth) {
  return depth < kDeepestJSON ? problemIn(object, depth + 1) : "lies too deep in lists and maps";
}

}  // namespace

std::optional<DefaultsObject> defaultsObjectFrom(id object) {
  if (auto* const data = as<NSData>(object)) return Object::data(dataFrom(data));
  if (auto* const text = as<NSString>(object)) return Object::text(textFrom(text));
  if (auto* const number = as<NSNumber>(object)) return objectOfNumber(number);
  if (auto* const date = as<NSDate>(object)) return Object::date(*dateFrom(date));
  if (auto* const list = as<NSArray>(object)) return objectOfList(list);
  if (auto* const map = as<NSDictionary>(object)) return objectOfMap(map);
  return std::nullopt;
}

id nativeDefaultsObject(const DefaultsObject& object) {
  return object.match([](const auto& value) { return native(value); });
}

std::string storageProblem(const DefaultsObject& object) { return problemWithin(object, 0); }

}  // namespace Foundation
