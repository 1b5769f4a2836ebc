#import <Foundation/Foundation.h>
#include <unicode/calendar.h>
#include <unicode/smpdtfmt.h>

#include <memory>
#include <optional>

// This Foundation has the method that says how much of a text was read, and always says no. It never
// refuses a day that does not exist either. Here the method does what it does on the platform: it
// reads what stands at the beginning, and is content with that; what the text leaves open is that of
// 1 January 2000.

namespace {

icu::UnicodeString unicode(NSString* text) {
  return icu::UnicodeString::fromUTF8([text UTF8String]);
}

void startAtTheMillennium(icu::Calendar& calendar, UErrorCode& status) {
  constexpr UDate kMillennium = 946'684'800'000;  // in UTC, milliseconds since 1970
  std::int32_t offset = 0;
  std::int32_t daylightSaving = 0;
  calendar.getTimeZone().getOffset(kMillennium, true, offset, daylightSaving, status);
  calendar.setTime(kMillennium - offset - daylightSaving, status);
}

// How much of `text` was read; absent when it is no date.
std::optional<std::int32_t> read(const icu::SimpleDateFormat& format,
                                 const icu::UnicodeString& text, icu::Calendar& calendar) {
  icu::ParsePosition position(0);
  format.parse(text, calendar, position);
  if (position.getErrorIndex() >= 0) return std::nullopt;
  return position.getIndex();
}

}  // namespace

@implementation NSDateFormatter (HowMuchWasRead)

- (BOOL)getObjectValue:(id*)date
             forString:(NSString*)text
                 range:(NSRange*)range
                 error:(NSError**)error {
  UErrorCode status = U_ZERO_ERROR;
  const auto locale = icu::Locale::createCanonical([[[self locale] localeIdentifier] UTF8String]);
  icu::SimpleDateFormat format(unicode([self dateFormat]), locale, status);
  if (U_FAILURE(status)) return NO;
  format.adoptTimeZone(icu::TimeZone::createTimeZone(unicode([[self timeZone] name])));
  format.setLenient([self isLenient]);
  const std::unique_ptr<icu::Calendar> calendar(format.getCalendar()->clone());
  startAtTheMillennium(*calendar, status);
  const auto length = read(format, unicode(text), *calendar);
  const double milliseconds = calendar->getTime(status);
  if (!length || U_FAILURE(status)) return NO;
  *range = NSMakeRange(0, static_cast<NSUInteger>(*length));
  *date = [NSDate dateWithTimeIntervalSince1970:milliseconds / 1000];
  return YES;
}

@end
