#include "platform/Foundation/DateFormatter.hpp"

#include <unicode/calendar.h>
#include <unicode/smpdtfmt.h>

#include <memory>

#include "platform/Foundation/UnicodeText.hpp"

namespace Foundation {

namespace {

icu::UnicodeString unicode(std::string_view text) {
  return icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
}

// Absent for an identifier that ICU does not know, for which it hands out a zone of that name.
std::unique_ptr<icu::TimeZone> timeZone(const std::string& identifier) {
  std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(unicode(identifier)));
  return *zone == icu::TimeZone::getUnknown() ? nullptr : std::move(zone);
}

// What a text leaves open is that of midnight on 1 January 2000, as on the platform.
void setDefaults(icu::Calendar& calendar, UErrorCode& status) {
  constexpr UDate kMillennium = 946'684'800'000;  // in UTC, milliseconds since 1970
  int32_t offset = 0;
  int32_t daylightSaving = 0;
  calendar.getTimeZone().getOffset(kMillennium, true, offset, daylightSaving, status);
  calendar.setTime(kMillennium - offset - daylightSaving, status);
}

}  // namespace

std::optional<Date> DateFormatter::dateFromString(std::string_view text) const {
  if (text.empty() || !isUTF8(text) || !isUTF8(dateFormat_)) return std::nullopt;
  UErrorCode status = U_ZERO_ERROR;
  icu::SimpleDateFormat format(unicode(dateFormat_),
                               icu::Locale::createCanonical(locale_.identifier().c_str()), status);
  if (U_FAILURE(status)) return std::nullopt;
  if (timeZone_) {
    if (auto zone = timeZone(*timeZone_)) format.adoptTimeZone(zone.release());
  }
  format.setLenient(false);
  const auto whole = unicode(text);
  const std::unique_ptr<icu::Calendar> calendar(format.getCalendar()->clone());
  setDefaults(*calendar, status);
  icu::ParsePosition position(0);
  format.parse(whole, *calendar, position);
  if (position.getErrorIndex() >= 0 || position.getIndex() != whole.length()) return std::nullopt;
  const UDate milliseconds = calendar->getTime(status);
  if (U_FAILURE(status)) return std::nullopt;
  return Date::sinceEpoch(milliseconds / 1000.0);
}

}  // namespace Foundation
