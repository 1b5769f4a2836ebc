#include "platform/Foundation/UnicodeText.hpp"
#include "platform/apple/Foundation/Bridging.hpp"

namespace Foundation {

namespace {

std::any valueOfNumber(NSNumber* native) {
  const auto number = numberFrom(native);
  if (!number) return {};
  if (const auto* const truth = std::get_if<bool>(&*number)) return *truth;
  if (const auto* const integer = std::get_if<std::int64_t>(&*number)) return *integer;
  if (const auto* const floating = std::get_if<double>(&*number)) return *floating;
  return {};
}

}  // namespace

std::any valueFrom(id value) {
  if (auto* const text = as<NSString>(value)) return textFrom(text);
  if (auto* const number = as<NSNumber>(value)) return valueOfNumber(number);
  if (auto* const error = as<::NSError>(value)) return errorFrom(error);
  return {};
}

id nativeValue(const std::any& value) {
  if (const auto* const text = std::any_cast<std::string>(&value)) {
    return isUTF8(*text) ? nativeText(*text) : nil;
  }
  if (const auto* const truth = std::any_cast<bool>(&value)) return nativeNumber(*truth);
  if (const auto* const integer = std::any_cast<std::int64_t>(&value)) {
    return nativeNumber(*integer);
  }
  if (const auto* const floating = std::any_cast<double>(&value)) return nativeNumber(*floating);
  if (const auto* const error = std::any_cast<NSError>(&value)) return nativeError(*error);
  return nil;
}

}  // namespace Foundation
