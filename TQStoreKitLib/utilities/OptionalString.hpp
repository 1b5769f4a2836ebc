#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Foundation/Date.hpp"

/// Conversions of text that may be absent: fields of server responses, stored settings.
///
/// Each takes an optional text or whatever converts to one: a text of any kind, `std::nullopt`. An
/// absent text counts as the empty one. What cannot be converted is absent or false.
/// Thread: any; `toDate` makes its own formatter at each call, which is what it mostly costs.

namespace TQStoreKitLib {

/// The text, or "".
[[nodiscard]] std::string valueOrEmpty(std::optional<std::string_view> text);

/// The date that lies so many milliseconds after 1 January 1970 00:00:00 UTC.
///
/// The whole text is read as C's `strtod` reads it in the C locale ("1500000000000", "1.5e12",
/// "0x1p40"), with nothing in front of it or behind. Fractions of milliseconds are kept.
[[nodiscard]] std::optional<Foundation::Date> dateMs(std::optional<std::string_view> text);

/// True for "1", "true", "yes" and "ok", in upper or lower case, and for nothing else.
[[nodiscard]] bool valueBool(std::optional<std::string_view> text);

/// The date that the whole text says after the pattern `format` ("yyyy-MM-dd HH:mm"), in UTC unless
/// it names a zone itself; locale and calendar are the user's. See `Foundation::DateFormatter`.
[[nodiscard]] std::optional<Foundation::Date> toDate(std::optional<std::string_view> text,
                                                     std::string format);

}  // namespace TQStoreKitLib
