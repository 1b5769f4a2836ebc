#include "platform/Foundation/URLSession.hpp"

#include <memory>
#include <utility>

#include "platform/apple/Foundation/urlsession/Session.hpp"
#include "platform/apple/Foundation/urlsession/Task.hpp"

namespace Foundation {

URLSession& URLSession::shared() {
  static auto& session = *new URLSession(Implementation::make(nullptr));
  return session;
}

std::shared_ptr<URLSession> URLSession::withDelegate(
    std::shared_ptr<URLSessionDownloadDelegate> delegate) {
  return std::make_shared<URLSession>(Implementation::make(std::move(delegate)));
}

std::shared_ptr<URLSessionDataTask> URLSession::dataTask(
    URLRequest request, URLSessionDataTask::Completion completion) {
  return std::make_shared<URLSessionDataTask>(std::make_shared<URLSessionTask::Implementation>(
      implementation_, std::move(request), std::move(completion)));
}

std::shared_ptr<URLSessionDownloadTask> URLSession::downloadTask(
    URL url, URLSessionDownloadTask::Completion completion) {
  return std::make_shared<URLSessionDownloadTask>(std::make_shared<URLSessionTask::Implementation>(
      implementation_, URLRequest(std::move(url)), std::move(completion)));
}

void URLSessionTask::resume() { implementation_->resume(); }
void URLSessionTask::cancel() { implementation_->cancel(); }
URLSessionTask::State URLSessionTask::state() const { return implementation_->state(); }
const URLRequest& URLSessionTask::originalRequest() const { return implementation_->request(); }
std::int64_t URLSessionTask::countOfBytesReceived() const { return implementation_->received(); }
std::int64_t URLSessionTask::countOfBytesExpectedToReceive() const {
  return implementation_->expected();
}

}  // namespace Foundation
