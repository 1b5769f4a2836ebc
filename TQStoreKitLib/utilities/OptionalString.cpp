#include "TQStoreKitLib/utilities/OptionalString.hpp"

#include <utility>

#include "platform/Foundation/DateFormatter.hpp"
#include "platform/Foundation/NumberText.hpp"
#include "platform/Foundation/UnicodeText.hpp"

namespace TQStoreKitLib {

std::string valueOrEmpty(std::optional<std::string_view> text) {
  return std::string(text.value_or(""));
}

std::optional<Foundation::Date> dateMs(std::optional<std::string_view> text) {
  const auto milliseconds = Foundation::doubleFromText(text.value_or(""));
  if (!milliseconds) return std::nullopt;
  return Foundation::Date::sinceEpoch(*milliseconds / 1000.0);
}

bool valueBool(std::optional<std::string_view> text) {
  const auto lower = Foundation::lowercased(text.value_or(""));
  return lower == "1" || lower == "true" || lower == "yes" || lower == "ok";
}

std::optional<Foundation::Date> toDate(std::optional<std::string_view> text, std::string format) {
  Foundation::DateFormatter formatter;
  formatter.setDateFormat(std::move(format));
  formatter.setTimeZone("UTC");
  return formatter.dateFromString(text.value_or(""));
}

}  // namespace TQStoreKitLib
