#pragma once

#import <Foundation/Foundation.h>

#include "platform/Foundation/NotificationCenter.hpp"

/// A C++ value on its way through the platform. Observers in Objective-C and Swift can ask it for
/// its description, as they can any object.
@interface TQStoreKitLibBox : NSObject {
  Foundation::NotificationObject* object_;
}
@end

namespace Foundation {

/// The object in a box; nil for no object.
[[nodiscard]] id nativeNotificationObject(const NotificationObject& object);
/// What is in the box; no object for nil and for what is no box of ours.
[[nodiscard]] NotificationObject notificationObjectFrom(id object);

/// Values that the platform has a type for are of that type, others are in boxes. Nil for an absent
/// user info.
[[nodiscard]] NSDictionary* nativeUserInfo(const std::optional<Notification::UserInfo>& userInfo);
/// Values of the platform's that none of ours can hold are missing. Absent for nil.
[[nodiscard]] std::optional<Notification::UserInfo> userInfoFrom(NSDictionary* userInfo);

[[nodiscard]] Notification notificationFrom(NSNotification* notification);

}  // namespace Foundation
