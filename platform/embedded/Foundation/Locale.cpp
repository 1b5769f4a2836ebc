#include "platform/Foundation/Locale.hpp"

#include <unicode/ucurr.h>

#include <array>

namespace Foundation {

std::optional<std::string> Locale::currencyCode() const {
  std::array<UChar, 4> code{};
  UErrorCode status = U_ZERO_ERROR;
  const auto length =
      ucurr_forLocale(identifier_.c_str(), code.data(), static_cast<int32_t>(code.size()), &status);
  if (U_FAILURE(status) || length != 3) return std::nullopt;
  return std::string(code.begin(), code.begin() + length);
}

}  // namespace Foundation
