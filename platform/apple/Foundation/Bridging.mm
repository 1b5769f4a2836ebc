#include "platform/apple/Foundation/Bridging.hpp"

#include <type_traits>

#include "platform/apple/Foundation/UTF16.hpp"

namespace Foundation {

static_assert(sizeof(unichar) == sizeof(char16_t), "the platform's characters are UTF-16 units");

std::string textFrom(NSString* text) {
  std::u16string units([text length], u'\0');
  if (units.empty()) return {};
  [text getCharacters:reinterpret_cast<unichar*>(units.data()) range:NSMakeRange(0, units.size())];
  return utf8FromUTF16(units);
}

std::optional<std::string> optionalTextFrom(NSString* text) {
  if (text == nil) return std::nullopt;
  return textFrom(text);
}

NSString* nativeText(std::string_view text) {
  const auto units = utf16FromUTF8(text);
  return [NSString stringWithCharacters:reinterpret_cast<const unichar*>(units.data())
                                 length:units.size()];
}

NSString* nativeOptionalText(const std::optional<std::string>& text) {
  return text ? nativeText(*text) : nil;
}

Data dataFrom(NSData* data) {
  const auto* const bytes = static_cast<const std::byte*>([data bytes]);
  return {bytes, bytes + [data length]};
}

NSData* nativeData(const Data& data) {
  return [NSData dataWithBytes:data.data() length:data.size()];
}

std::optional<Date> dateFrom(NSDate* date) {
  if (date == nil) return std::nullopt;
  return Date::sinceEpoch([date timeIntervalSince1970]);
}

NSDate* nativeDate(Date date) {
  return [NSDate dateWithTimeIntervalSince1970:date.timeIntervalSince1970()];
}

namespace {

// The locale whose decimal mark is a point, whatever the user's is.
id plainNSLocale() {
  return [[[NSLocale alloc] initWithLocaleIdentifier:@"en_US_POSIX"] autorelease];
}

}  // namespace

std::optional<Decimal> decimalFrom(NSDecimalNumber* number) {
  return Decimal::fromString(textFrom([number descriptionWithLocale:plainNSLocale()]));
}

NSDecimalNumber* nativeDecimal(const Decimal& number) {
  return [NSDecimalNumber decimalNumberWithString:nativeText(number.toString())
                                           locale:plainNSLocale()];
}

Locale localeFrom(NSLocale* locale) { return Locale(textFrom([locale localeIdentifier])); }

NSLocale* nativeLocale(const Locale& locale) {
  return [[[NSLocale alloc] initWithLocaleIdentifier:nativeText(locale.identifier())] autorelease];
}

}  // namespace Foundation
