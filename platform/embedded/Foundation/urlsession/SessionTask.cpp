#include "platform/embedded/Foundation/urlsession/SessionTask.hpp"

#include <utility>

#include "platform/embedded/Foundation/urlsession/SessionImplementation.hpp"
#include "platform/embedded/Foundation/urlsession/URLErrors.hpp"

namespace Foundation {

URLSessionTask::Implementation::Implementation(std::shared_ptr<URLSession::Implementation> session,
                                               URLRequest request)
    : session_(std::move(session)), request_(std::move(request)) {}

URLSessionTask::Implementation::~Implementation() = default;

void URLSessionTask::Implementation::resume() {
  const std::lock_guard lock(mutex_);  // also while it is handed over, so that no cancel overtakes
  if (state_ != State::suspended) return;
  state_ = State::running;
  session_->start(shared_from_this());
}

void URLSessionTask::Implementation::cancel() {
  const std::lock_guard lock(mutex_);
  if (state_ == State::running) {
    session_->cancel(*this);
  } else if (state_ == State::suspended) {
    queue().async(
        ending(shared_from_this(), detail::urlError(NSURLErrorCancelled, request_.url())));
  } else {
    return;
  }
  state_ = State::canceling;
}

URLSessionTask::State URLSessionTask::Implementation::state() const {
  const std::lock_guard lock(mutex_);
  return state_;
}

std::optional<NSError> URLSessionTask::Implementation::receiveResponse(URLResponsePtr response,
                                                                       bool hasBody) {
  response_ = std::move(response);
  expected_ = response_->expectedContentLength();
  return begin(hasBody);
}

std::optional<NSError> URLSessionTask::Implementation::receiveBytes(std::string_view bytes) {
  received_ += static_cast<std::int64_t>(bytes.size());
  return append(bytes);
}

Dispatch::SerialQueue::Block URLSessionTask::Implementation::ending(
    std::shared_ptr<Implementation> task, std::optional<NSError> error) {
  return [self = std::move(task), failure = std::move(error)] {
    {
      const std::lock_guard lock(self->mutex_);
      self->state_ = State::completed;
    }
    self->complete(std::move(self->response_), failure);
  };
}

const Dispatch::SerialQueue& URLSessionTask::Implementation::queue() const {
  return session_->queue();
}

void URLSessionTask::resume() { implementation_->resume(); }
void URLSessionTask::cancel() { implementation_->cancel(); }
URLSessionTask::State URLSessionTask::state() const { return implementation_->state(); }
const URLRequest& URLSessionTask::originalRequest() const {
  return implementation_->originalRequest();
}
std::int64_t URLSessionTask::countOfBytesReceived() const { return implementation_->received(); }
std::int64_t URLSessionTask::countOfBytesExpectedToReceive() const {
  return implementation_->expected();
}

}  // namespace Foundation
