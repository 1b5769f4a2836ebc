#include "platform/apple/Foundation/NotificationBridging.hpp"

#include <string>
#include <utility>

#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Foundation/Bridging.hpp"

namespace {

// A value of a user info that the platform has no type for.
struct UserInfoValue {
  std::any value;
  [[nodiscard]] std::string description() const { return "a value of C++"; }
};

}  // namespace

@implementation TQStoreKitLibBox

- (instancetype)initWithObject:(const Foundation::NotificationObject&)object {
  self = [super init];
  if (self != nil) object_ = new Foundation::NotificationObject(object);
  return self;
}

- (void)dealloc {
  Foundation::callBack("NotificationObject", [self] { delete object_; });
  [super dealloc];
}

- (const Foundation::NotificationObject*)object {
  return object_;
}

- (NSString*)description {
  return Foundation::nativeText(Foundation::askBack("NotificationObject::description", {},
                                                    [self] { return object_->description(); }));
}

@end

namespace Foundation {

id nativeNotificationObject(const NotificationObject& object) {
  if (object.isEmpty()) return nil;
  return [[[TQStoreKitLibBox alloc] initWithObject:object] autorelease];
}

NotificationObject notificationObjectFrom(id object) {
  auto* const box = as<TQStoreKitLibBox>(object);
  return box != nil ? *[box object] : NotificationObject();
}

NSDictionary* nativeUserInfo(const std::optional<Notification::UserInfo>& userInfo) {
  if (!userInfo) return nil;
  NSMutableDictionary* const dictionary = [NSMutableDictionary dictionary];
  for (const auto& [key, value] : *userInfo) {
    id native = nativeValue(value);
    if (native == nil)
      native = nativeNotificationObject(NotificationObject::box(UserInfoValue{value}));
    [dictionary setObject:native forKey:nativeText(key)];
  }
  return dictionary;
}

std::optional<Notification::UserInfo> userInfoFrom(NSDictionary* userInfo) {
  if (userInfo == nil) return std::nullopt;
  Notification::UserInfo result;
  for (id key in userInfo) {
    auto* const name = as<NSString>(key);
    const id native = [userInfo objectForKey:key];
    const auto boxed = notificationObjectFrom(native);
    const auto* const ours = boxed.as<UserInfoValue>();
    auto value = ours != nullptr ? ours->value : valueFrom(native);
    if (name != nil && (ours != nullptr || value.has_value())) {
      result.emplace(textFrom(name), std::move(value));
    }
  }
  return result;
}

Notification notificationFrom(NSNotification* notification) {
  return {NotificationName(textFrom([notification name])),
          notificationObjectFrom([notification object]), userInfoFrom([notification userInfo])};
}

}  // namespace Foundation
