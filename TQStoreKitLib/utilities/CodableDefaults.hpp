#pragma once

#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Foundation/JSONDecoder.hpp"
#include "platform/Foundation/JSONEncoder.hpp"
#include "platform/Foundation/UserDefaults.hpp"

/// Keeps values of codable types in the user defaults, one or a list of them under a key.
///
///     auto& defaults = Foundation::UserDefaults::standardUserDefaults();
///     setCodable(defaults, player, "player");
///     std::optional<Player> last = codable<Player>(defaults, "player");
///
///     setCodableList(defaults, friends, "friends");
///     std::vector<Player> all = codableList<Player>(defaults, "friends");
///
/// How a type becomes codable: see Codable.hpp. The store holds bytes: UTF-8 JSON text, as the
/// platform's encoder writes it by default. A list is an array, and what is absent is null: the key
/// stays in the store. Each call makes its own encoder or decoder.
///
/// Fails: nothing is reported. What cannot be encoded leaves the value that was there; what cannot
/// be read (there is nothing, no bytes, or no such value) is absent, or an empty list, and is left
/// alone. A conversion that throws counts as one that fails.
/// Thread: any, as the store.

namespace Foundation {

namespace detail {

/// The bytes under `key`; null when there is something else, or nothing.
[[nodiscard]] DefaultsObjectPtr storedData(const UserDefaults& defaults, std::string_view key);

/// Stores what was encoded, if it was.
void storeEncoding(UserDefaults& defaults, JSONEncoding encoding, std::string_view key);

template <class T>
void setEncoded(UserDefaults& defaults, const T& value, std::string_view key) {
  storeEncoding(defaults, JSONEncoder().encode(value), key);
}

}  // namespace detail

/// The value under `key`. A `T` that is itself a list is read from an array.
template <CodableType T>
[[nodiscard]] std::optional<T> codable(const UserDefaults& defaults, std::string_view key) {
  static_assert(!detail::kIsOptional<T>,
                "absent is what codable answers anyway: ask for the value");
  const auto object = detail::storedData(defaults, key);
  if (!object) return std::nullopt;
  return JSONDecoder().decode<T>(*object->asData()).value;
}

/// The list under `key`, in its order.
template <CodableType T>
[[nodiscard]] std::vector<T> codableList(const UserDefaults& defaults, std::string_view key) {
  return codable<std::vector<T>>(defaults, key).value_or(std::vector<T>());
}

/// Replaces what is under `key`.
template <CodableType T>
void setCodable(UserDefaults& defaults, const T& value, std::string_view key) {
  detail::setEncoded(defaults, value, key);
}

inline void setCodable(UserDefaults& defaults, std::nullopt_t /*absent*/, std::string_view key) {
  detail::setEncoded(defaults, std::optional<bool>(), key);
}

template <CodableType T>
void setCodableList(UserDefaults& defaults, const std::vector<T>& list, std::string_view key) {
  detail::setEncoded(defaults, list, key);
}

template <CodableType T>
void setCodableList(UserDefaults& defaults, const std::optional<std::vector<T>>& list,
                    std::string_view key) {
  detail::setEncoded(defaults, list, key);
}

inline void setCodableList(UserDefaults& defaults, std::nullopt_t absent, std::string_view key) {
  setCodable(defaults, absent, key);
}

}  // namespace Foundation
