#include "platform/embedded/Foundation/urlsession/DownloadTask.hpp"

#include <cerrno>
#include <memory>
#include <utility>

#include "platform/embedded/Foundation/URLLoading.hpp"
#include "platform/embedded/Foundation/urlsession/SessionImplementation.hpp"
#include "platform/embedded/Foundation/urlsession/URLErrors.hpp"

namespace Foundation::detail {

DownloadTask::DownloadTask(std::shared_ptr<URLSession::Implementation> session, URLRequest request,
                           URLSessionDownloadTask::Completion completion)
    : Implementation(std::move(session), std::move(request)), completion_(std::move(completion)) {}

long DownloadTask::bufferSize() const {
  constexpr long kLargeBuffer = 256L * 1024;
  return kLargeBuffer;
}

std::optional<NSError> DownloadTask::begin(bool) {
  const int error = file_.create(downloadFolder());
  if (error == 0) return std::nullopt;
  return urlError(NSURLErrorCannotCreateFile, originalRequest().url(), posixError(error));
}

std::optional<NSError> DownloadTask::append(std::string_view bytes) {
  const int error = file_.write(bytes);
  if (error != 0) {
    return urlError(NSURLErrorCannotWriteToFile, originalRequest().url(), posixError(error));
  }
  if (session().delegate()) hasWritten(static_cast<std::int64_t>(bytes.size()));
  return std::nullopt;
}

void DownloadTask::hasWritten(std::int64_t bytes) {
  {
    const std::lock_guard lock(mutex_);
    written_ += bytes;
    const bool isTold = untold_ > 0;
    untold_ += bytes;
    if (isTold) return;
  }
  auto self = std::static_pointer_cast<DownloadTask>(shared_from_this());
  session().queue().async([task = std::move(self)] { task->tellProgress(); });
}

void DownloadTask::tellProgress() {
  std::int64_t news = 0;
  std::int64_t total = 0;
  {
    const std::lock_guard lock(mutex_);
    news = std::exchange(untold_, 0);
    total = written_;
  }
  URLSessionDownloadTask handle(shared_from_this());
  session().delegate()->didWriteData(handle, news, total, expected());
}

void DownloadTask::complete(URLResponsePtr response, std::optional<NSError> error) {
  handOver(std::move(response), std::move(error));
  file_.remove();
}

void DownloadTask::handOver(URLResponsePtr response, std::optional<NSError> error) {
  const auto completion = std::exchange(completion_, nullptr);
  std::optional<URL> location;
  if (!error && file_.exists()) location = URL::fileURLWithPath(file_.path());
  if (error) file_.remove();
  if (completion) {
    completion(std::move(location), std::move(response), std::move(error));
  } else if (location && session().delegate()) {
    URLSessionDownloadTask handle(shared_from_this());
    session().delegate()->didFinishDownloadingTo(handle, *location);
  }
}

}  // namespace Foundation::detail
