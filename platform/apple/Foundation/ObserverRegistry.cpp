#include "platform/apple/Foundation/ObserverRegistry.hpp"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <utility>

#include "platform/apple/ExceptionBarrier.hpp"

namespace Foundation {

struct ObserverRegistry::Registration {
  Registration(NotificationName observedName, NotificationCenter::Observer function)
      : name(std::move(observedName)), observer(std::move(function)) {}

  NotificationName name;
  NotificationCenter::Observer observer;
  std::atomic<bool> active = true;
};

NotificationObservation ObserverRegistry::add(const NotificationName& name,
                                              NotificationCenter::Observer observer) {
  auto registration = std::make_shared<Registration>(name, std::move(observer));
  {
    const std::lock_guard lock(mutex_);
    registrations_.push_back(registration);
  }
  auto* const raw = registration.get();
  return NotificationObservation(std::shared_ptr<void>(
      raw, [this, registration = std::move(registration)](void*) { remove(registration); }));
}

void ObserverRegistry::deliver(const Notification& notification) {
  for (const auto& registration : observing(notification.name)) {
    if (!registration->active || !registration->observer) continue;
    callBack("NotificationCenter::Observer", [&] { registration->observer(notification); });
  }
}

void ObserverRegistry::remove(const RegistrationPtr& registration) {
  registration->active = false;
  const std::lock_guard lock(mutex_);
  std::erase(registrations_, registration);
}

std::vector<ObserverRegistry::RegistrationPtr> ObserverRegistry::observing(
    const NotificationName& name) {
  std::vector<RegistrationPtr> found;
  const std::lock_guard lock(mutex_);
  std::copy_if(registrations_.begin(), registrations_.end(), std::back_inserter(found),
               [&](const RegistrationPtr& registration) { return registration->name == name; });
  return found;
}

}  // namespace Foundation
