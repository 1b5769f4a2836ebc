#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string_view>

#include "platform/embedded/Foundation/urlsession/SessionTask.hpp"
#include "platform/embedded/Foundation/urlsession/TemporaryFile.hpp"

namespace Foundation::detail {

/// Writes the body to a temporary file, and tells the session's delegate how far it has come. A
/// delegate that is slower than the net hears less often, of more bytes at a time: nothing piles up.
class DownloadTask final : public URLSessionTask::Implementation {
 public:
  DownloadTask(std::shared_ptr<URLSession::Implementation> session, URLRequest request,
               URLSessionDownloadTask::Completion completion);

 private:
  [[nodiscard]] long bufferSize() const override;
  std::optional<NSError> begin(bool hasBody) override;
  std::optional<NSError> append(std::string_view bytes) override;
  void complete(URLResponsePtr response, std::optional<NSError> error) override;
  void hasWritten(std::int64_t bytes);
  void tellProgress();
  void handOver(URLResponsePtr response, std::optional<NSError> error);

  URLSessionDownloadTask::Completion completion_;
  TemporaryFile file_;
  std::mutex mutex_;
  std::int64_t untold_ = 0;  // bytes that the delegate has not heard of
  std::int64_t written_ = 0;
};

}  // namespace Foundation::detail
