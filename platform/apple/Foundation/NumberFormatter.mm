#include "platform/Foundation/NumberFormatter.hpp"

#import <Foundation/Foundation.h>

#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Foundation/Bridging.hpp"

namespace Foundation {

std::optional<std::string> NumberFormatter::stringFromNumber(const Decimal& number) const {
  return askPlatform("NumberFormatter::stringFromNumber", std::nullopt, [&] {
    const auto formatter = Retained<NSNumberFormatter*>::adopt([[NSNumberFormatter alloc] init]);
    [formatter.get() setLocale:nativeLocale(locale_)];
    [formatter.get() setNumberStyle:static_cast<NSNumberFormatterStyle>(style_)];
    return optionalTextFrom([formatter.get() stringFromNumber:nativeDecimal(number)]);
  });
}

}  // namespace Foundation
