#include "platform/Foundation/NotificationCenter.hpp"

#import <Foundation/Foundation.h>

#include <mutex>
#include <set>
#include <utility>

#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Foundation/Bridging.hpp"
#include "platform/apple/Foundation/NotificationBridging.hpp"
#include "platform/apple/Foundation/ObserverRegistry.hpp"

namespace {

Foundation::ObserverRegistry& registry() {
  static auto& instance = *new Foundation::ObserverRegistry;
  return instance;
}

}  // namespace

/// Hands what the platform's centre delivers to our registry.
@interface TQStoreKitLibNotificationReceiver : NSObject
@end

@implementation TQStoreKitLibNotificationReceiver

- (void)receive:(NSNotification*)notification {
  Foundation::callBack("NotificationCenter", [notification] {
    registry().deliver(Foundation::notificationFrom(notification));
  });
}

@end

namespace Foundation {

namespace {

// The receiver and the names that it was registered for. It stays registered: a name that nobody
// observes any more costs one look into the registry.
struct Reception {
  std::mutex mutex;
  std::set<std::string> names;
  TQStoreKitLibNotificationReceiver* receiver = [[TQStoreKitLibNotificationReceiver alloc] init];
};

Reception& reception() {
  static auto& instance = *new Reception;
  return instance;
}

void receive(const NotificationName& name) {
  const std::lock_guard lock(reception().mutex);
  if (!reception().names.insert(name.rawValue()).second) return;
  callPlatform("NotificationCenter::addObserver", [&] {
    [[NSNotificationCenter defaultCenter] addObserver:reception().receiver
                                             selector:@selector(receive:)
                                                 name:nativeText(name.rawValue())
                                               object:nil];
  });
}

}  // namespace

NotificationCenter& NotificationCenter::defaultCenter() {
  static auto& center = *new NotificationCenter;
  return center;
}

NotificationObservation NotificationCenter::addObserver(const NotificationName& name,
                                                        Observer observer) {
  receive(name);
  return registry().add(name, std::move(observer));
}

void NotificationCenter::post(const NotificationName& name, const NotificationObject& object,
                              const std::optional<Notification::UserInfo>& userInfo) {
  callPlatform("NotificationCenter::post", [&] {
    [[NSNotificationCenter defaultCenter] postNotificationName:nativeText(name.rawValue())
                                                        object:nativeNotificationObject(object)
                                                      userInfo:nativeUserInfo(userInfo)];
  });
}

}  // namespace Foundation
