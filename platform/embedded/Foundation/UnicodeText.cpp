#include "platform/Foundation/UnicodeText.hpp"

#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace Foundation {

std::string lowercased(std::string_view text) {
  std::string result;
  icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())})
      .toLower(icu::Locale::getRoot())
      .toUTF8String(result);
  return result;
}

}  // namespace Foundation
