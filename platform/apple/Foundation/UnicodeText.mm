#include "platform/Foundation/UnicodeText.hpp"

#import <Foundation/Foundation.h>

#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Foundation/Bridging.hpp"

namespace Foundation {

std::string lowercased(std::string_view text) {
  return askPlatform("lowercased", std::string(text),
                     [text] { return textFrom([nativeText(text) lowercaseString]); });
}

}  // namespace Foundation
