#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "platform/StoreKit/SKPaymentTransactionObserver.hpp"

namespace StoreKit {

/// The payment queue's observers, in the order in which they came; none is owned.
///
/// Thread: main.
class ObserverList {
 public:
  [[nodiscard]] bool isEmpty() const { return entries_.empty(); }

  /// False when it is there already.
  bool add(SKPaymentTransactionObserver& observer) {
    for (const auto& entry : entries_) {
      if (entry.observer == &observer) return false;
    }
    entries_.push_back({&observer, nextSerial_++});
    return true;
  }

  void remove(SKPaymentTransactionObserver& observer) {
    std::erase_if(entries_, [&](const Entry& entry) { return entry.observer == &observer; });
  }

  /// Calls each observer. Observers may come and go meanwhile: one that is gone is not called any
  /// more, one that is new is not called yet, also when it stands where an old one stood. This
  /// object must outlive the call.
  template <class Call>
  void notify(const Call& call) const {
    for (const auto& entry : std::vector(entries_)) {
      if (contains(entry.serial)) call(*entry.observer);
    }
  }

 private:
  struct Entry {
    SKPaymentTransactionObserver* observer;
    std::uint64_t serial;
  };

  [[nodiscard]] bool contains(std::uint64_t serial) const {
    return std::any_of(entries_.begin(), entries_.end(),
                       [&](const Entry& entry) { return entry.serial == serial; });
  }

  std::vector<Entry> entries_;
  std::uint64_t nextSerial_ = 0;
};

}  // namespace StoreKit
