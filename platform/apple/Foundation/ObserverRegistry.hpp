#pragma once

#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

#include "platform/Foundation/NotificationCenter.hpp"

namespace Foundation {

/// The C++ observers of notifications. The platform's centre has one observer of ours for each name
/// and no order among its own; here they have one.
///
/// Thread: any.
class ObserverRegistry {
 public:
  ObserverRegistry() = default;
  ObserverRegistry(const ObserverRegistry&) = delete;
  ObserverRegistry& operator=(const ObserverRegistry&) = delete;

  /// Registers until the answer is dropped. The registry must outlive it.
  [[nodiscard]] NotificationObservation add(const NotificationName& name,
                                            NotificationCenter::Observer observer);

  /// Calls the observers of the notification's name, in the order in which they came. What one
  /// throws is said on standard error.
  void deliver(const Notification& notification);

 private:
  struct Registration;
  using RegistrationPtr = std::shared_ptr<Registration>;

  void remove(const RegistrationPtr& registration);
  [[nodiscard]] std::vector<RegistrationPtr> observing(const NotificationName& name);

  std::mutex mutex_;
  std::vector<RegistrationPtr> registrations_;
};

}  // namespace Foundation
