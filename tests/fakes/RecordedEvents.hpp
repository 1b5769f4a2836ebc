#pragma once

#include <utility>
#include <vector>

#include "TQStoreKitLib/manager/TQStoreKitEvent.hpp"
#include "tests/fakes/Journal.hpp"

namespace TQStoreKitLib::tests {

/// Hears the store's events, as long as it lives.
class RecordedEvents {
 public:
  explicit RecordedEvents(JournalPtr sharedJournal = aJournal())
      : journal_(std::move(sharedJournal)),
        observation_(Foundation::NotificationCenter::defaultCenter().addObserver(
            TQStoreKitEvent::kTQStoreKitEvent(), [this](const Foundation::Notification& posted) {
              notifications.push_back(posted);
              journal_->push_back("event " + posted.object.description());
            })) {}
  RecordedEvents(const RecordedEvents&) = delete;
  RecordedEvents& operator=(const RecordedEvents&) = delete;

  std::vector<Foundation::Notification> notifications{};

  [[nodiscard]] const Journal& lines() const { return *journal_; }
  /// The purchase event at `index`; null when that is something else.
  [[nodiscard]] const TQStoreKitEvent::PurchaseEvent* purchase(std::size_t index) const {
    const auto* const event = notifications.at(index).object.as<TQStoreKitEvent>();
    return event != nullptr ? event->asPurchase() : nullptr;
  }

 private:
  JournalPtr journal_;
  Foundation::NotificationObservation observation_;
};

}  // namespace TQStoreKitLib::tests
