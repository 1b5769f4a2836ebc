#pragma once

#include <atomic>
#include <memory>

#include "platform/Foundation/URLSession.hpp"
#include "platform/embedded/Dispatch/SerialQueue.hpp"

namespace Foundation {

namespace detail {
class ConnectionPool;
}

/// What a session's handle and its tasks share. Its connections close when the last of them goes.
class URLSession::Implementation {
 public:
  explicit Implementation(std::shared_ptr<URLSessionDownloadDelegate> delegate);
  ~Implementation();
  Implementation(const Implementation&) = delete;
  Implementation& operator=(const Implementation&) = delete;

  void start(std::shared_ptr<URLSessionTask::Implementation> task);
  void cancel(const URLSessionTask::Implementation& task);

  [[nodiscard]] const Dispatch::SerialQueue& queue() const { return queue_; }
  [[nodiscard]] const std::shared_ptr<URLSessionDownloadDelegate>& delegate() const {
    return delegate_;
  }

 private:
  const std::shared_ptr<URLSessionDownloadDelegate> delegate_;
  const Dispatch::SerialQueue queue_;
  // Touched by commands on the network thread only, which do not outlive the last of them.
  std::shared_ptr<detail::ConnectionPool> pool_;
  std::atomic<bool> started_ = false;
};

}  // namespace Foundation
