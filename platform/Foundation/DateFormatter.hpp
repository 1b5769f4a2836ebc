#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Foundation/Date.hpp"
#include "platform/Foundation/Locale.hpp"

namespace Foundation {

/// Reads dates that are written after a pattern (Unicode's date field symbols: "yyyy-MM-dd HH:mm").
///
/// Locale and calendar are the user's, as they were when the formatter was made; the zone is the
/// system's until one is set. Nothing is shared between formatters, which has its price.
/// Thread: one formatter is used by one thread at a time.
class DateFormatter {
 public:
  DateFormatter() = default;

  void setDateFormat(std::string pattern) { dateFormat_ = std::move(pattern); }

  /// The zone of texts that do not name one. An identifier that the system does not know leaves the
  /// system's own.
  void setTimeZone(std::string identifier) { timeZone_ = std::move(identifier); }

  /// The date that `text` says. What the pattern leaves open is that of 1 January 2000 00:00:00 in
  /// the formatter's zone.
  ///
  /// Strict: absent unless the whole of a non-empty text matches and such a day exists. Absent as
  /// well for a pattern that is none and for a text that is not UTF-8.
  [[nodiscard]] std::optional<Date> dateFromString(std::string_view text) const;

 private:
  Locale locale_ = Locale::current();
  std::string dateFormat_;
  std::optional<std::string> timeZone_;
};

}  // namespace Foundation
