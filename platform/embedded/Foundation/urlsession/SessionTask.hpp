#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>

#include "platform/Foundation/URLSession.hpp"
#include "platform/embedded/Dispatch/SerialQueue.hpp"

namespace Foundation {

/// What a task's handles share. Made by the session; kept by its handles, by its transfer, and by
/// what waits on the session's queue.
class URLSessionTask::Implementation : public std::enable_shared_from_this<Implementation> {
 public:
  Implementation(std::shared_ptr<URLSession::Implementation> session, URLRequest request);
  virtual ~Implementation();
  Implementation(const Implementation&) = delete;
  Implementation& operator=(const Implementation&) = delete;

  // For the handles, on any thread.
  void resume();
  void cancel();
  [[nodiscard]] State state() const;
  [[nodiscard]] const URLRequest& originalRequest() const { return request_; }
  [[nodiscard]] std::int64_t received() const { return received_; }
  [[nodiscard]] std::int64_t expected() const { return expected_; }

  // For the transfer, on the network thread.

  /// Bytes that are received and handed to `receiveBytes` at a time, at most. What comes in smaller
  /// pieces is gathered for a task that takes more than libcurl's own CURL_MAX_WRITE_SIZE: as many as
  /// are there, it never waits for more.
  [[nodiscard]] virtual long bufferSize() const = 0;
  /// The head of the answer, once; `hasBody` when bytes may follow, be they none. An answer is why
  /// the task does not go on.
  [[nodiscard]] std::optional<NSError> receiveResponse(URLResponsePtr response, bool hasBody);
  [[nodiscard]] std::optional<NSError> receiveBytes(std::string_view bytes);
  /// What is to run on the session's queue, once, with the outcome. Takes the reference along, so
  /// that the last one is not dropped here.
  [[nodiscard]] static Dispatch::SerialQueue::Block ending(std::shared_ptr<Implementation> task,
                                                           std::optional<NSError> error);
  [[nodiscard]] const Dispatch::SerialQueue& queue() const;

 protected:
  [[nodiscard]] URLSession::Implementation& session() const { return *session_; }

  // On the network thread.
  [[nodiscard]] virtual std::optional<NSError> begin(bool hasBody) = 0;
  [[nodiscard]] virtual std::optional<NSError> append(std::string_view bytes) = 0;
  // On the session's queue.
  virtual void complete(URLResponsePtr response, std::optional<NSError> error) = 0;

 private:
  const std::shared_ptr<URLSession::Implementation> session_;
  const URLRequest request_;
  URLResponsePtr response_;
  std::atomic<std::int64_t> received_ = 0;
  std::atomic<std::int64_t> expected_ = 0;
  mutable std::mutex mutex_;
  State state_ = State::suspended;
};

}  // namespace Foundation
