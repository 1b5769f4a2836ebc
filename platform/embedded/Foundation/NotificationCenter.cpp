#include "platform/Foundation/NotificationCenter.hpp"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <vector>

namespace Foundation {

namespace {

struct Registration {
  Registration(NotificationName observedName, NotificationCenter::Observer function)
      : name(std::move(observedName)), observer(std::move(function)) {}

  NotificationName name;
  NotificationCenter::Observer observer;
  std::atomic<bool> active = true;
};
using RegistrationPtr = std::shared_ptr<Registration>;

class Registry {
 public:
  void add(const RegistrationPtr& registration) {
    const std::lock_guard lock(mutex_);
    registrations_.push_back(registration);
  }

  void remove(const RegistrationPtr& registration) {
    registration->active = false;
    const std::lock_guard lock(mutex_);
    std::erase(registrations_, registration);
  }

  std::vector<RegistrationPtr> observing(const NotificationName& name) {
    std::vector<RegistrationPtr> found;
    const std::lock_guard lock(mutex_);
    std::copy_if(registrations_.begin(), registrations_.end(), std::back_inserter(found),
                 [&](const RegistrationPtr& registration) { return registration->name == name; });
    return found;
  }

 private:
  std::mutex mutex_;
  std::vector<RegistrationPtr> registrations_;
};

Registry& registry() {
  static auto& instance = *new Registry;
  return instance;
}

}  // namespace

NotificationCenter& NotificationCenter::defaultCenter() {
  static auto& center = *new NotificationCenter;
  return center;
}

NotificationObservation NotificationCenter::addObserver(const NotificationName& name,
                                                        Observer observer) {
  auto registration = std::make_shared<Registration>(name, std::move(observer));
  registry().add(registration);
  auto* const raw = registration.get();
  return NotificationObservation(std::shared_ptr<void>(
      raw, [registration = std::move(registration)](void*) { registry().remove(registration); }));
}

void NotificationCenter::post(const NotificationName& name, const NotificationObject& object,
                              const std::optional<Notification::UserInfo>& userInfo) {
  const Notification notification{name, object, userInfo};
  for (const auto& registration : registry().observing(name)) {
    if (registration->active && registration->observer) registration->observer(notification);
  }
}

}  // namespace Foundation
