#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "tests/platform/embedded/store/ledger/WatchedDisk.hpp"

namespace tests {

/// A number that another thread raises, to be waited for.
class Counter {
 public:
  void count() {
    change([](int value) { return value + 1; });
  }
  void raiseTo(int least) {
    change([least](int value) { return std::max(value, least); });
  }
  bool reach(int wanted, std::chrono::milliseconds patience) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, patience, [&] { return value_ >= wanted; });
  }
  bool reachMore(int more, std::chrono::milliseconds patience) {
    return reach(value() + more, patience);
  }
  int value() {
    const std::lock_guard lock(mutex_);
    return value_;
  }

 private:
  template <class Change>
  void change(Change changed) {
    const std::lock_guard lock(mutex_);
    value_ = changed(value_);
    changed_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  int value_ = 0;
};

/// What every thread but this one does with the disk: that is the ledger's own. It is there before
/// the ledger is opened, and after it was closed.
class DiskOfWatcher {
 public:
  DiskOfWatcher() {
    WatchedDisk::install(
        [this](WatchedDisk::Operation operation, bool log) {
          if (isOfWatcher()) note(operation, log);
        },
        [this](WatchedDisk::Glance glance) {
          if (!isOfWatcher()) return;
          if (glance == WatchedDisk::Glance::open) opens.count();
          if (glance == WatchedDisk::Glance::look) looks.count();
        });
  }
  ~DiskOfWatcher() { WatchedDisk::install(nullptr); }
  DiskOfWatcher(const DiskOfWatcher&) = delete;
  DiskOfWatcher& operator=(const DiskOfWatcher&) = delete;

  Counter opens;
  Counter looks;
  Counter emptied;  ///< the log; it is going to be when this is counted

  /// The last five things that it asked for up to the last emptying: "wait for log", "write file"
  /// ... Repetitions count once.
  std::vector<std::string> askedOfEmptying() {
    const std::lock_guard lock(mutex_);
    return askedOfEmptying_;
  }

 private:
  using Operation = WatchedDisk::Operation;

  [[nodiscard]] bool isOfWatcher() const { return std::this_thread::get_id() != main_; }

  void note(Operation operation, bool log) {
    static constexpr const char* kNames[] = {"write", "cut", "wait for", "remove"};
    const auto line =
        std::string(kNames[static_cast<std::size_t>(operation)]) + (log ? " log" : " file");
    const bool empties = log && operation == Operation::truncate;
    {
      const std::lock_guard lock(mutex_);
      if (asked_.empty() || asked_.back() != line) asked_.push_back(line);
      if (asked_.size() > 5) asked_.erase(asked_.begin());
      if (empties) askedOfEmptying_ = asked_;
    }
    if (empties) emptied.count();
  }

  const std::thread::id main_ = std::this_thread::get_id();
  std::mutex mutex_;
  std::vector<std::string> asked_;
  std::vector<std::string> askedOfEmptying_;
};

}  // namespace tests
