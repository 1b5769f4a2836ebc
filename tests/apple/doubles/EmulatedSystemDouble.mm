#include <mutex>

#include "platform/embedded/Foundation/EmulatedSystem.hpp"
#include "platform/embedded/Foundation/MainBundle.hpp"
#include "tests/apple/doubles/SystemVersion.hpp"

// The controls of the embedded realisation over what the system says: tests that use them find the
// same controls over this Foundation.

namespace {

struct System {
  std::mutex mutex;
  NSLocale* locale = nil;
  NSDictionary* strings = nil;
};

System& systemNow() {
  static auto& system = *new System;
  return system;
}

NSString* platformText(const std::string& text) {
  return [[[NSString alloc] initWithBytes:text.data()
                                   length:text.size()
                                 encoding:NSUTF8StringEncoding] autorelease];
}

template <class Object>
void replace(Object& kept, Object object) {
  const std::lock_guard lock(systemNow().mutex);
  [kept autorelease];
  kept = [object retain];
}

}  // namespace

@implementation NSLocale (Emulated)

+ (id)currentLocale {
  const std::lock_guard lock(systemNow().mutex);
  NSLocale* const locale = systemNow().locale;
  if (locale != nil) return [[locale retain] autorelease];
  return [[[NSLocale alloc] initWithLocaleIdentifier:@"en_US"] autorelease];
}

@end

@implementation NSBundle (Emulated)

- (NSString*)localizedStringForKey:(NSString*)key value:(NSString*)value table:(NSString*)table {
  const std::lock_guard lock(systemNow().mutex);
  NSString* const text = [systemNow().strings objectForKey:key];
  if (text != nil) return [[text retain] autorelease];
  return [value length] > 0 ? value : key;
}

@end

namespace Foundation {

void setCurrentLocale(std::optional<Locale> locale) {
  @autoreleasepool {
    NSLocale* const native =
        locale ? [[[NSLocale alloc] initWithLocaleIdentifier:platformText(locale->identifier())]
                     autorelease]
               : nil;
    replace(systemNow().locale, native);
  }
}

void setOperatingSystemVersion(int major, int minor) { tests::playSystem(major, minor); }

void setMainBundleStrings(std::map<std::string, std::string, std::less<>> strings) {
  @autoreleasepool {
    NSMutableDictionary* const table = [NSMutableDictionary dictionary];
    for (const auto& [key, text] : strings) {
      [table setObject:platformText(text) forKey:platformText(key)];
    }
    replace(systemNow().strings, static_cast<NSDictionary*>(table));
  }
}

}  // namespace Foundation
