#pragma once

#include <memory>

#include "platform/embedded/store/StoreSession.hpp"
#include "tests/fakes/MainQueueTurns.hpp"

namespace tests {

/// The store's clock, in the hands of a test: it stands still until it is moved. Copies are one
/// clock.
class ManualClock {
 public:
  /// 14 November 2023, 22:13:20 UTC.
  static constexpr double kStart = 1'700'000'000;

  /// Sources that go by this clock; the transaction identifiers are 101, 102 and so on.
  [[nodiscard]] StoreKit::StoreSources sources() const {
    StoreKit::StoreSources sources;
    sources.now = [seconds = seconds_] { return Foundation::Date::sinceEpoch(*seconds); };
    sources.transactionIdentifier = [](std::int64_t number) {
      return std::to_string(100 + number);
    };
    return sources;
  }

  [[nodiscard]] double now() const { return *seconds_; }
  /// Moves the clock without a word to the store.
  void set(double seconds) const { *seconds_ = seconds; }
  /// Seconds since the start.
  [[nodiscard]] double elapsed() const { return *seconds_ - kStart; }

  /// Moves the clock, and lets the store do what has become due.
  void advance(StoreKit::StoreSession& session, double seconds) const {
    *seconds_ += seconds;
    session.clockDidChange();
    (void)turnUntilIdle();
  }

 private:
  std::shared_ptr<double> seconds_ = std::make_shared<double>(kStart);
};

}  // namespace tests
