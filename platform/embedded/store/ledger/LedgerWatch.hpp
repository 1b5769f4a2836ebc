#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace StoreKit::detail {

/// Looks after a ledger file from a thread of its own: tells when another program has changed it,
/// and brings the write-ahead log back into the file while nobody is writing.
/// When the file cannot be read it says so once, and tries again each second.
///
/// A look costs a few microseconds, forty times a second.
class LedgerWatch {
 public:
  /// `changed` runs on the watching thread; it may come once more than needed.
  LedgerWatch(std::string path, std::function<void()> changed);

  /// Returns once the thread has ended; `changed` does not run any more then.
  ~LedgerWatch();
  LedgerWatch(const LedgerWatch&) = delete;
  LedgerWatch& operator=(const LedgerWatch&) = delete;

 private:
  void run();
  void watch();
  // False when it is time to end.
  [[nodiscard]] bool waitFor(std::chrono::milliseconds pause);

  const std::string path_;
  const std::function<void()> changed_;
  std::mutex mutex_;
  std::condition_variable ended_;
  bool ending_ = false;
  std::thread thread_;
};

}  // namespace StoreKit::detail
