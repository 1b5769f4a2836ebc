#pragma once

#include <any>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace Foundation {

/// The name that a notification is posted and observed under.
class NotificationName {
 public:
  explicit NotificationName(std::string rawValue) : rawValue_(std::move(rawValue)) {}

  [[nodiscard]] const std::string& rawValue() const { return rawValue_; }
  friend bool operator==(const NotificationName&, const NotificationName&) = default;

 private:
  std::string rawValue_;
};

/// A value of any type, boxed so that the notification centre can carry it.
///
/// Immutable and shared: copying a box copies a reference. An observer in the platform's own
/// language sees an object that answers with `description`.
class NotificationObject {
 public:
  /// No object.
  NotificationObject() = default;

  /// Boxes `value`. `T` needs a copy constructor and `std::string description() const`.
  template <class T>
  [[nodiscard]] static NotificationObject box(T value) {
    NotificationObject object;
    object.value_ = std::make_shared<const std::any>(std::move(value));
    object.describe_ = [](const std::any& any) { return std::any_cast<T>(&any)->description(); };
    return object;
  }

  [[nodiscard]] bool isEmpty() const { return value_ == nullptr; }

  /// The boxed value when it is a `T`, else null. Lives as long as this object or a copy of it.
  template <class T>
  [[nodiscard]] const T* as() const {
    return value_ ? std::any_cast<T>(value_.get()) : nullptr;
  }

  /// The value's own description; empty for no object.
  [[nodiscard]] std::string description() const { return value_ ? describe_(*value_) : ""; }

 private:
  std::shared_ptr<const std::any> value_;
  std::string (*describe_)(const std::any&) = nullptr;
};

/// What an observer is handed.
struct Notification {
  using UserInfo = std::map<std::string, std::any, std::less<>>;

  NotificationName name;
  NotificationObject object;
  /// Absent, unless the poster gave one.
  std::optional<UserInfo> userInfo{};
};

/// Keeps an observer registered; dropping it ends the delivery.
///
/// Move-only. After it is dropped no new call of the observer begins; on another thread one may
/// still be under way.
class NotificationObservation {
 public:
  NotificationObservation() = default;
  explicit NotificationObservation(std::shared_ptr<void> registration)
      : registration_(std::move(registration)) {}

  NotificationObservation(NotificationObservation&&) noexcept = default;
  NotificationObservation& operator=(NotificationObservation&&) noexcept = default;
  ~NotificationObservation() = default;

  /// Ends the delivery now; once is enough.
  void cancel() { registration_.reset(); }

 private:
  std::shared_ptr<void> registration_;
};

/// Tells observers that something happened.
///
/// Posting is synchronous: every observer of the name runs on the posting thread before `post`
/// returns, in the order in which they registered. An observer may post, register and remove
/// observers, itself included: one that is removed meanwhile is not called any more, one that is
/// added meanwhile is not called for the notification under way.
/// Thread: any.
class NotificationCenter {
 public:
  using Observer = std::function<void(const Notification&)>;

  NotificationCenter(const NotificationCenter&) = delete;
  NotificationCenter& operator=(const NotificationCenter&) = delete;

  /// The process's one centre; made on first use, never destroyed.
  [[nodiscard]] static NotificationCenter& defaultCenter();

  /// Calls `observer` for each notification of that name until the answer is dropped. An empty
  /// `observer` is never called.
  [[nodiscard]] NotificationObservation addObserver(const NotificationName& name,
                                                    Observer observer);

  void post(const NotificationName& name, const NotificationObject& object,
            const std::optional<Notification::UserInfo>& userInfo = std::nullopt);

 private:
  NotificationCenter() = default;
  ~NotificationCenter() = default;
};

}  // namespace Foundation
