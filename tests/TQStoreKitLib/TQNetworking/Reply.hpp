#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "TQStoreKitLib/TQNetworking.hpp"
#include "tests/server/HttpServer.hpp"

namespace TQStoreKitLib::tests {

using ::tests::HttpServer;

inline Foundation::URL address(const std::string& text) {
  return *Foundation::URL::withString(text);
}

/// Waits for the completion of one request, and sees whether it comes more than once.
template <class T>
class Reply {
 public:
  Reply() = default;
  Reply(const Reply&) = delete;
  Reply& operator=(const Reply&) = delete;

  [[nodiscard]] TQNetworking::Completion<T> handler() {
    return [this](TQResponse<T> response) {
      const std::lock_guard lock(mutex_);
      responses_.push_back(std::move(response));
      thread_ = std::this_thread::get_id();
      came_.notify_all();
    };
  }

  /// The response; after ten seconds without one, one whose error is `unknow`.
  [[nodiscard]] TQResponse<T> wait() {
    std::unique_lock lock(mutex_);
    came_.wait_for(lock, std::chrono::seconds(10), [this] { return !responses_.empty(); });
    return responses_.empty() ? TQResponse<T>{.error = TQNWError::unknow()} : responses_.front();
  }
  [[nodiscard]] std::size_t count() const {
    const std::lock_guard lock(mutex_);
    return responses_.size();
  }
  /// The thread that the completion came on.
  [[nodiscard]] std::thread::id thread() const {
    const std::lock_guard lock(mutex_);
    return thread_;
  }

 private:
  mutable std::mutex mutex_;
  std::condition_variable came_;
  std::vector<TQResponse<T>> responses_;
  std::thread::id thread_;
};

/// The completions of the shared session come one after another: behind this one, those of all
/// requests that were answered before have run.
inline void waitForAllBefore(const HttpServer& server) {
  Reply<Foundation::Data> reply;
  TQNetworking::shared().requestData(address(server.url("/text")), TQHttpMethod::get, std::nullopt,
                                     {}, reply.handler());
  (void)reply.wait();
}

}  // namespace TQStoreKitLib::tests
