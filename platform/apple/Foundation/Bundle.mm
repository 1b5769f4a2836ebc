#include "platform/Foundation/Bundle.hpp"

#import <Foundation/Foundation.h>

#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Foundation/Bridging.hpp"

namespace Foundation {

std::string localizedString(std::string_view key) {
  return askPlatform("localizedString", std::string(key), [key] {
    NSString* const name = nativeText(key);
    NSString* const text = [[NSBundle mainBundle] localizedStringForKey:name value:nil table:nil];
    // The key is not taken through the platform: it might not be UTF-8.
    return [text isEqualToString:name] ? std::string(key) : textFrom(text);
  });
}

}  // namespace Foundation
