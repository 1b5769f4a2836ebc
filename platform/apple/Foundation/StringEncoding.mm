#include "platform/Foundation/StringEncoding.hpp"

#import <Foundation/Foundation.h>

#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Foundation/Bridging.hpp"
#include "platform/apple/Foundation/UnicodeEncodings.hpp"

namespace Foundation {

namespace {

::NSStringEncoding nativeEncoding(NSStringEncoding encoding) {
  return static_cast<::NSStringEncoding>(encoding);
}

bool isKnown(::NSStringEncoding encoding) {
  const auto* known = [NSString availableStringEncodings];
  while (*known != 0 && *known != encoding) ++known;
  return *known != 0;
}

std::optional<std::string> decodeByPlatform(const Data& bytes, ::NSStringEncoding encoding) {
  if (!isKnown(encoding)) return std::nullopt;
  const auto text = Retained<NSString*>::adopt([[NSString alloc] initWithData:nativeData(bytes)
                                                                     encoding:encoding]);
  return optionalTextFrom(text.get());
}

}  // namespace

std::string localizedName(NSStringEncoding encoding) {
  return askPlatform("localizedName", std::to_string(encoding), [encoding] {
    const bool hasName = isUnicodeEncoding(encoding) || isKnown(nativeEncoding(encoding));
    auto name =
        hasName ? textFrom([NSString localizedNameOfStringEncoding:nativeEncoding(encoding)]) : "";
    return name.empty() ? std::to_string(encoding) : name;
  });
}

std::optional<std::string> decodeText(const Data& bytes, NSStringEncoding encoding) {
  if (isUnicodeEncoding(encoding)) return decodeUnicode(textInData(bytes), encoding);
  return askPlatform("decodeText", std::nullopt,
                     [&] { return decodeByPlatform(bytes, nativeEncoding(encoding)); });
}

}  // namespace Foundation
