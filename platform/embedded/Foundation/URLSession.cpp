#include "platform/Foundation/URLSession.hpp"

#include <utility>

#include "platform/embedded/Foundation/urlsession/ConnectionPool.hpp"
#include "platform/embedded/Foundation/urlsession/DataTask.hpp"
#include "platform/embedded/Foundation/urlsession/DownloadTask.hpp"
#include "platform/embedded/Foundation/urlsession/SessionImplementation.hpp"

namespace Foundation {

using detail::NetworkThread;

URLSession::Implementation::Implementation(std::shared_ptr<URLSessionDownloadDelegate> delegate)
    : delegate_(std::move(delegate)), pool_(std::make_shared<detail::ConnectionPool>()) {}

// The last command of the session: the connections close on the thread that uses them.
URLSession::Implementation::~Implementation() {
  if (started_) NetworkThread::instance().post([pool = std::move(pool_)] {});
}

void URLSession::Implementation::start(std::shared_ptr<URLSessionTask::Implementation> task) {
  started_ = true;
  auto* const pool = pool_.get();
  NetworkThread::instance().post(
      [pool, started = std::move(task)]() mutable { pool->start(std::move(started)); });
}

void URLSession::Implementation::cancel(const URLSessionTask::Implementation& task) {
  NetworkThread::instance().post([pool = pool_.get(), &task] { pool->cancel(&task); });
}

URLSession& URLSession::shared() {
  static auto& session = *new URLSession(std::make_shared<Implementation>(nullptr));
  return session;
}

std::shared_ptr<URLSession> URLSession::withDelegate(
    std::shared_ptr<URLSessionDownloadDelegate> delegate) {
  return std::make_shared<URLSession>(std::make_shared<Implementation>(std::move(delegate)));
}

std::shared_ptr<URLSessionDataTask> URLSession::dataTask(
    URLRequest request, URLSessionDataTask::Completion completion) {
  return std::make_shared<URLSessionDataTask>(std::make_shared<detail::DataTask>(
      implementation_, std::move(request), std::move(completion)));
}

std::shared_ptr<URLSessionDownloadTask> URLSession::downloadTask(
    URL url, URLSessionDownloadTask::Completion completion) {
  return std::make_shared<URLSessionDownloadTask>(std::make_shared<detail::DownloadTask>(
      implementation_, URLRequest(std::move(url)), std::move(completion)));
}

}  // namespace Foundation
