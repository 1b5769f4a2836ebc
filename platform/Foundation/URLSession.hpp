#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "platform/Foundation/URLRequest.hpp"
#include "platform/Foundation/URLSessionTask.hpp"

namespace Foundation {

/// Hears of the downloads of a session.
///
/// `downloadTask` has the same state and request as the handle that the session gave out; it may be
/// another object.
/// Callbacks come on: the session's own queue, one after another, each before the completion of its
/// task.
class URLSessionDownloadDelegate {
 public:
  virtual ~URLSessionDownloadDelegate() = default;

  /// A download without a completion has ended well. The file is removed when this returns, unless
  /// it was moved away; one with a completion gets it there and not here.
  virtual void didFinishDownloadingTo(URLSessionDownloadTask& downloadTask,
                                      const URL& location) = 0;

  /// Bytes were written to the temporary file, for a task with a completion or without. The third
  /// number is `kUnknownLength` when the server didn't say how many will come.
  virtual void didWriteData(URLSessionDownloadTask& downloadTask, std::int64_t bytesWritten,
                            std::int64_t totalBytesWritten,
                            std::int64_t totalBytesExpectedToWrite) = 0;
};

/// Loads what is behind addresses: over HTTP and HTTPS.
///
/// A session has a serial queue of its own, on a thread of the system's, never the main one: the
/// completions of its tasks and the calls of its delegate run there, one after another. They are
/// user code, may do anything with any task or session, and are destroyed on that queue when they
/// have run.
///
/// The tasks of one session share its connections and its cookies. On the phone the cookies are
/// those of the application: all sessions have them in common, and they may outlast the process.
/// Elsewhere each session has cookies of its own, in memory, as long as it lives. Redirects are
/// followed as browsers do: 303 turns into a GET, and so does a POST by 301 or 302. Errors are in
/// `NSURLErrorDomain`.
///
/// A task keeps its session, and a session its delegate. A session that nobody refers to and that
/// has no task under way is released, and its delegate with it.
/// Thread: any, several at the same time.
class URLSession {
 public:
  class Implementation;

  /// For the realisation, which alone knows what is behind it.
  explicit URLSession(std::shared_ptr<Implementation> implementation)
      : implementation_(std::move(implementation)) {}
  URLSession(const URLSession&) = delete;
  URLSession& operator=(const URLSession&) = delete;

  /// The process's own session, without a delegate; made on first use, never destroyed.
  [[nodiscard]] static URLSession& shared();

  /// A session with the default configuration. A null delegate means none.
  [[nodiscard]] static std::shared_ptr<URLSession> withDelegate(
      std::shared_ptr<URLSessionDownloadDelegate> delegate);

  /// A task for `request`, which is copied; `resume` starts it. An empty completion is not called.
  [[nodiscard]] std::shared_ptr<URLSessionDataTask> dataTask(
      URLRequest request, URLSessionDataTask::Completion completion);

  /// A task that downloads `url` with a GET; `resume` starts it. Without a completion the delegate
  /// gets the file; without both it is removed.
  [[nodiscard]] std::shared_ptr<URLSessionDownloadTask> downloadTask(
      URL url, URLSessionDownloadTask::Completion completion);

 private:
  std::shared_ptr<Implementation> implementation_;
};

}  // namespace Foundation
