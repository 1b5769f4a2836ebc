#include "platform/Foundation/DateFormatter.hpp"

#import <Foundation/Foundation.h>

#include "platform/Foundation/UnicodeText.hpp"
#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Foundation/Bridging.hpp"

namespace Foundation {

namespace {

// The date that the whole of `text` says. The plain conversion would be content with its beginning.
std::optional<Date> wholeDate(NSDateFormatter* formatter, NSString* text) {
  id date = nil;
  auto range = NSMakeRange(0, [text length]);
  if (![formatter getObjectValue:&date forString:text range:&range error:nullptr])
    return std::nullopt;
  if (range.location != 0 || range.length != [text length]) return std::nullopt;
  return dateFrom(as<NSDate>(date));
}

}  // namespace

std::optional<Date> DateFormatter::dateFromString(std::string_view text) const {
  if (text.empty() || !isUTF8(text) || !isUTF8(dateFormat_)) return std::nullopt;
  return askPlatform("DateFormatter::dateFromString", std::nullopt, [&] {
    const auto formatter = Retained<NSDateFormatter*>::adopt([[NSDateFormatter alloc] init]);
    [formatter.get() setLocale:nativeLocale(locale_)];
    if (timeZone_) {
      auto* const zone = [NSTimeZone timeZoneWithName:nativeText(*timeZone_)];
      if (zone != nil) [formatter.get() setTimeZone:zone];
    }
    [formatter.get() setDateFormat:nativeText(dateFormat_)];
    [formatter.get() setLenient:NO];
    return wholeDate(formatter.get(), nativeText(text));
  });
}

}  // namespace Foundation
