#include "platform/Foundation/Locale.hpp"

#import <Foundation/Foundation.h>

#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Foundation/Bridging.hpp"

namespace Foundation {

Locale Locale::current() {
  return askPlatform("Locale::current", Locale(),
                     [] { return localeFrom([NSLocale currentLocale]); });
}

std::optional<std::string> Locale::currencyCode() const {
  return askPlatform("Locale::currencyCode", std::nullopt, [this] {
    return optionalTextFrom(as<NSString>([nativeLocale(*this) objectForKey:NSLocaleCurrencyCode]));
  });
}

}  // namespace Foundation
