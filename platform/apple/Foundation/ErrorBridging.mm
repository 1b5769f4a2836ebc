#include "platform/apple/Foundation/Bridging.hpp"

#include <any>
#include <utility>

namespace Foundation {

namespace {

using UserInfo = NSError::UserInfo;

UserInfo userInfoFrom(NSDictionary* dictionary) {
  UserInfo userInfo;
  for (id key in dictionary) {
    auto* const name = as<NSString>(key);
    auto value = valueFrom([dictionary objectForKey:key]);
    if (name != nil && value.has_value()) userInfo.emplace(textFrom(name), std::move(value));
  }
  return userInfo;
}

// The platform makes some descriptions only when it is asked; its general one is ours as well.
void addDescription(UserInfo& userInfo, ::NSError* error) {
  if (userInfo.contains(NSLocalizedDescriptionKey)) return;
  auto description = textFrom([error localizedDescription]);
  const NSError bare(textFrom([error domain]), [error code]);
  if (description.empty() || description == bare.localizedDescription()) return;
  userInfo.emplace(NSLocalizedDescriptionKey, std::move(description));
}

NSDictionary* nativeUserInfo(const UserInfo& userInfo) {
  NSMutableDictionary* const dictionary = [NSMutableDictionary dictionary];
  for (const auto& [key, value] : userInfo) {
    const id native = nativeValue(value);
    if (native != nil) [dictionary setObject:native forKey:nativeText(key)];
  }
  return dictionary;
}

}  // namespace

NSError errorFrom(::NSError* error) {
  auto userInfo = userInfoFrom([error userInfo]);
  addDescription(userInfo, error);
  return {textFrom([error domain]), [error code], std::move(userInfo), handleOn(error)};
}

std::optional<NSError> optionalErrorFrom(::NSError* error) {
  if (error == nil) return std::nullopt;
  return errorFrom(error);
}

::NSError* nativeError(const NSError& error) {
  if (auto* const native = as<::NSError>(nativeObject(error.native()))) return native;
  return [::NSError errorWithDomain:nativeText(error.domain())
                               code:static_cast<NSInteger>(error.code())
                           userInfo:nativeUserInfo(error.userInfo())];
}

}  // namespace Foundation
