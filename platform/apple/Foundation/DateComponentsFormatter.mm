#include "platform/Foundation/DateComponentsFormatter.hpp"

#import <Foundation/Foundation.h>

#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Foundation/Bridging.hpp"

namespace Foundation {

namespace {

NSDateComponents* nativeComponents(const DateComponents& components) {
  auto* const native = [[[NSDateComponents alloc] init] autorelease];
  if (components.year) [native setYear:*components.year];
  if (components.month) [native setMonth:*components.month];
  if (components.weekOfMonth) [native setWeekOfMonth:*components.weekOfMonth];
  if (components.day) [native setDay:*components.day];
  return native;
}

// The units that are present. Left to itself, the formatter would make a year of twelve months.
NSCalendarUnit unitsIn(const DateComponents& components) {
  NSCalendarUnit units = 0;
  if (components.year) units |= NSCalendarUnitYear;
  if (components.month) units |= NSCalendarUnitMonth;
  if (components.weekOfMonth) units |= NSCalendarUnitWeekOfMonth;
  if (components.day) units |= NSCalendarUnitDay;
  return units;
}

}  // namespace

std::optional<std::string> DateComponentsFormatter::stringFromDateComponents(
    const DateComponents& components) const {
  const auto units = unitsIn(components);
  if (units == 0) return std::nullopt;
  return askPlatform("DateComponentsFormatter::stringFromDateComponents", std::nullopt, [&] {
    const auto formatter =
        Retained<NSDateComponentsFormatter*>::adopt([[NSDateComponentsFormatter alloc] init]);
    [formatter.get() setUnitsStyle:static_cast<NSDateComponentsFormatterUnitsStyle>(unitsStyle_)];
    [formatter.get() setAllowedUnits:units];
    [formatter.get() setZeroFormattingBehavior:NSDateComponentsFormatterZeroFormattingBehaviorNone];
    return optionalTextFrom(
        [formatter.get() stringFromDateComponents:nativeComponents(components)]);
  });
}

}  // namespace Foundation
