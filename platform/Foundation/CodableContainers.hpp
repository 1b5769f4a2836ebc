#pragma once

#include <concepts>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/Foundation/Data.hpp"
#include "platform/Foundation/Decoder.hpp"
#include "platform/Foundation/Encoder.hpp"

/// Codable: optional values, lists and maps of codable types. See Codable.hpp.

namespace Foundation {

template <class T>
struct Codable<std::optional<T>> {
  static void encode(Encoder& encoder, const std::optional<T>& value) {
    if (value) {
      encoder.value(*value);
    } else {
      encoder.null();
    }
  }
  static void decode(Decoder& decoder, std::optional<T>& value) {
    value.reset();
    if (!decoder.takeNull()) decoder.value(value.emplace());
  }
};

template <class T, class Allocator>
  requires(!std::same_as<T, std::byte>)
struct Codable<std::vector<T, Allocator>> {
  static void encode(Encoder& encoder, const std::vector<T, Allocator>& list) {
    encoder.beginList();
    for (const T& element : list) {
      encoder.nextElement();
      encoder.value(element);
    }
    encoder.endList();
  }
  static void decode(Decoder& decoder, std::vector<T, Allocator>& list) {
    list.clear();
    for (decoder.beginList(); decoder.nextElement();) {
      T element{};
      decoder.value(element);
      list.push_back(std::move(element));
    }
  }
};

namespace detail {

template <class Map>
struct CodableMap {
  static void encode(Encoder& encoder, const Map& map) {
    encoder.beginObject();
    for (const auto& [key, value] : map) {
      encoder.key(key);
      encoder.value(value);
    }
    encoder.endObject();
  }
  static void decode(Decoder& decoder, Map& map) {
    map.clear();
    for (decoder.beginObject(); decoder.nextField();) {
      typename Map::mapped_type value{};
      const std::string key(decoder.key());
      decoder.value(value);
      map.insert_or_assign(key, std::move(value));
    }
  }
};

}  // namespace detail

template <class T, class Order, class Allocator>
struct Codable<std::map<std::string, T, Order, Allocator>>
    : detail::CodableMap<std::map<std::string, T, Order, Allocator>> {};

template <class T, class Hash, class Equal, class Allocator>
struct Codable<std::unordered_map<std::string, T, Hash, Equal, Allocator>>
    : detail::CodableMap<std::unordered_map<std::string, T, Hash, Equal, Allocator>> {};

}  // namespace Foundation
