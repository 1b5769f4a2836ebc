#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "platform/Foundation/Data.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/URLRequest.hpp"
#include "platform/Foundation/URLResponse.hpp"

namespace Foundation {

/// One request on its way: started by `resume`, stopped by `cancel`, completed exactly once.
///
/// A handle. From `resume` until its completion has run, a task lives without it: dropping the
/// handle stops nothing. One that is neither resumed nor cancelled goes away with its handle, and
/// never completes.
/// Thread: any, several at the same time.
class URLSessionTask {
 public:
  class Implementation;

  /// The platform's numbers.
  enum class State : std::int64_t { running = 0, suspended = 1, canceling = 2, completed = 3 };

  URLSessionTask(const URLSessionTask&) = delete;
  URLSessionTask& operator=(const URLSessionTask&) = delete;

  /// Starts the task; returns at once. Does nothing on one that was started, cancelled or
  /// completed.
  void resume();

  /// Asks the task to stop, also before it was started. It completes soon, never inside this call,
  /// with `NSURLErrorCancelled`, unless its outcome was already decided. The connection is not used
  /// again. Once is enough.
  void cancel();

  /// A new task is suspended. It is completed before its completion runs.
  [[nodiscard]] State state() const;

  [[nodiscard]] const URLRequest& originalRequest() const;

  /// Bytes of the body that have arrived, as they are handed out.
  [[nodiscard]] std::int64_t countOfBytesReceived() const;
  /// Bytes of the body that will arrive; `kUnknownLength` when the server didn't say, 0 before it
  /// answered.
  [[nodiscard]] std::int64_t countOfBytesExpectedToReceive() const;

 protected:
  explicit URLSessionTask(std::shared_ptr<Implementation> implementation)
      : implementation_(std::move(implementation)) {}
  ~URLSessionTask() = default;

 private:
  std::shared_ptr<Implementation> implementation_;
};

/// A task whose body is collected in memory.
class URLSessionDataTask final : public URLSessionTask {
 public:
  /// The bytes; the answer; why it failed.
  ///
  /// A failed task has an error and no bytes, and the answer if one had come. One that succeeded
  /// has no error: the status of an HTTP answer is not looked at. Its bytes are absent when the
  /// answer can't have any (of status 204 or 304, or to a HEAD), and empty when it happens to have
  /// none.
  using Completion =
      std::function<void(std::optional<Data>, URLResponsePtr, std::optional<NSError>)>;

  /// For the realisation, which alone knows what is behind it.
  explicit URLSessionDataTask(std::shared_ptr<Implementation> implementation)
      : URLSessionTask(std::move(implementation)) {}
};

/// A task whose body is written to a temporary file as it comes.
class URLSessionDownloadTask final : public URLSessionTask {
 public:
  /// The file with the whole body; the answer; why it failed.
  ///
  /// A failed task has an error and no file, and the answer if one had come. A file that is still
  /// there when the completion returns is removed: move it away before that. What stands in its
  /// place by then and is another file stays.
  using Completion =
      std::function<void(std::optional<URL>, URLResponsePtr, std::optional<NSError>)>;

  /// For the realisation, which alone knows what is behind it.
  explicit URLSessionDownloadTask(std::shared_ptr<Implementation> implementation)
      : URLSessionTask(std::move(implementation)) {}
};

}  // namespace Foundation
