#pragma once

#import <Foundation/Foundation.h>

#include <any>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/Foundation/Data.hpp"
#include "platform/Foundation/Date.hpp"
#include "platform/Foundation/Decimal.hpp"
#include "platform/Foundation/Locale.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/NativeObject.hpp"
#include "platform/apple/Retained.hpp"

namespace Foundation {

/// The platform's values as ours and back: `...From` makes ours, `native...` the platform's.
///
/// What is made for the platform is autoreleased, and never nil unless the function says so; who
/// keeps it retains it. To be called in an autorelease pool, as `askPlatform` provides one.
/// Thread: any.

/// Malformed text becomes U+FFFD, in both directions; nil becomes the empty text.
[[nodiscard]] std::string textFrom(NSString* text);
/// Nil is absent, the empty text empty.
[[nodiscard]] std::optional<std::string> optionalTextFrom(NSString* text);
[[nodiscard]] NSString* nativeText(std::string_view text);
/// Nil for an absent text.
[[nodiscard]] NSString* nativeOptionalText(const std::optional<std::string>& text);

/// Nil becomes no bytes.
[[nodiscard]] Data dataFrom(NSData* data);
[[nodiscard]] NSData* nativeData(const Data& data);

[[nodiscard]] std::optional<Date> dateFrom(NSDate* date);
[[nodiscard]] NSDate* nativeDate(Date date);

/// Exact, as is the way back. Absent for nil, for what is not a number, and for the few of the
/// platform's numbers with a 39th digit.
[[nodiscard]] std::optional<Decimal> decimalFrom(NSDecimalNumber* number);
[[nodiscard]] NSDecimalNumber* nativeDecimal(const Decimal& number);

/// Nil becomes the locale without an identifier.
[[nodiscard]] Locale localeFrom(NSLocale* locale);
[[nodiscard]] NSLocale* nativeLocale(const Locale& locale);

/// What a number of the platform holds; as `std::uint64_t` only beyond `std::int64_t`.
using Number = std::variant<bool, std::int64_t, std::uint64_t, double>;
/// A boolean is one only if it was made as one. Absent for nil, and for a decimal that is none of
/// the four exactly.
[[nodiscard]] std::optional<Number> numberFrom(NSNumber* number);
[[nodiscard]] NSNumber* nativeNumber(const Number& number);

/// Keeps the platform's object, and what our values can hold of its user info. Its description is
/// there also when the platform has not put it into the user info.
[[nodiscard]] NSError errorFrom(::NSError* error);
/// Nil is absent.
[[nodiscard]] std::optional<NSError> optionalErrorFrom(::NSError* error);
/// The very object that the error came from; else a new one with all that it says.
[[nodiscard]] ::NSError* nativeError(const NSError& error);

/// A value of a user info: `std::string`, `std::int64_t`, `double`, `bool` or `NSError`. Empty for
/// what is none of these.
[[nodiscard]] std::any valueFrom(id value);
/// Nil for a value of another type, and for text that is not UTF-8.
[[nodiscard]] id nativeValue(const std::any& value);

/// A handle on a native object, with its equality and hash.
[[nodiscard]] std::shared_ptr<const NativeObject> handleOn(id object);
/// The object of a handle from `handleOn`; nil for null and for any other handle.
[[nodiscard]] id nativeObject(const std::shared_ptr<const NativeObject>& handle);

/// Each element of `list` as `convert` makes it; nil becomes the empty list.
template <class Convert>
[[nodiscard]] auto listFrom(NSArray* list, Convert convert) {
  std::vector<decltype(convert(id()))> result;
  result.reserve([list count]);
  for (id element in list) result.push_back(convert(element));
  return result;
}

/// Each element of `list` as `convert` makes it, which is never nil.
template <class List, class Convert>
[[nodiscard]] NSArray* nativeList(const List& list, Convert convert) {
  NSMutableArray* const result = [NSMutableArray array];
  for (const auto& element : list) [result addObject:convert(element)];
  return result;
}

/// `object` if it is a `Class`, else nil.
template <class Class>
[[nodiscard]] Class* as(id object) {
  return [object isKindOfClass:[Class class]] ? static_cast<Class*>(object) : nil;
}

}  // namespace Foundation
