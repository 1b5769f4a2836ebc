#pragma once

#include <cstdint>
#include <functional>
#include <utility>

#include "platform/Foundation/URLSession.hpp"

namespace TQStoreKitLib {

/// Hands the progress of one download on to whoever asked for it. Private to the client.
///
/// Callbacks come on: the queue of the download's session.
class TQProgressDownload final : public Foundation::URLSessionDownloadDelegate {
 public:
  using Progress = std::function<void(std::int64_t, std::int64_t, std::int64_t)>;

  /// An empty callback is not called.
  explicit TQProgressDownload(Progress progress) : progress_(std::move(progress)) {}

  /// Does nothing: the task's completion gets the file.
  void didFinishDownloadingTo(Foundation::URLSessionDownloadTask& downloadTask,
                              const Foundation::URL& location) override;

  void didWriteData(Foundation::URLSessionDownloadTask& downloadTask, std::int64_t bytesWritten,
                    std::int64_t totalBytesWritten,
                    std::int64_t totalBytesExpectedToWrite) override;

 private:
  const Progress progress_;
};

}  // namespace TQStoreKitLib
