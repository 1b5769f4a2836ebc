#pragma once

/// How a type becomes codable: it says its fields once, in one function that serves encoding and
/// decoding alike.
///
///     struct Player {
///       std::string name;
///       int level = 0;
///       std::optional<std::string> guild;
///     };
///     template <class Coder>
///     void codableFields(Coder& coder, Player& player) {
///       coder("name", player.name)("level", player.level)("guild", player.guild);
///     }
///
/// The function stands in the type's own namespace, also for a type that cannot be changed; for
/// private members it is a friend, defined inside the class. It may run several times for one
/// decoding, and must not change the value when that is encoded. The type has a default
/// constructor. A type with a base class says the base's fields too: `codableFields(coder,
/// static_cast<Base&>(value))`.
///
/// Codable are `bool`, integers and floating numbers, `std::string`, `Date` (seconds since 1
/// January 2001 00:00:00 UTC), `Data` (base 64), enums that name their cases (CodableEnum.hpp),
/// types with `codableFields`, and of codable types: `std::optional`, `std::vector`, `std::map` and
/// `std::unordered_map` with text as keys. An optional field that is absent is left out; null and
/// left out both read as absent. Fields that the type does not have are passed over; of a field
/// that stands there twice, the later one counts.
///
/// A type that is coded in a way of its own specialises `Codable`:
///
///     template <>
///     struct Foundation::Codable<Version> {
///       static void encode(Encoder& encoder, const Version& version) {
///         encoder.text(version.text());
///       }
///       static void decode(Decoder& decoder, Version& version) {
///         std::string text;
///         decoder.text(text);
///         if (!version.parse(text)) decoder.fail("is no version");
///       }
///     };
///
/// These functions may throw: encoding or decoding then fails. docs/codable.md has an example of
/// each.

#include "platform/Foundation/CodableContainers.hpp"
#include "platform/Foundation/CodableEnum.hpp"
#include "platform/Foundation/CodableFields.hpp"
#include "platform/Foundation/CodableValues.hpp"

namespace Foundation {

/// A type that an encoder can write and a decoder can read.
template <class T>
concept CodableType = requires(Encoder& encoder, Decoder& decoder, const T& constant, T& variable) {
  Codable<T>::encode(encoder, constant);
  Codable<T>::decode(decoder, variable);
};

}  // namespace Foundation
