#include "platform/apple/Foundation/urlsession/Task.hpp"

#include <utility>

#include "platform/Foundation/URLError.hpp"
#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Foundation/Bridging.hpp"
#include "platform/apple/Foundation/urlsession/MessageBridging.hpp"
#include "platform/apple/Foundation/urlsession/RequestProblem.hpp"
#include "platform/apple/Foundation/urlsession/Session.hpp"

namespace Foundation {

namespace {

NSError urlError(NSURLErrorCode code) { return {std::string(NSURLErrorDomain), code}; }

}  // namespace

using Task = URLSessionTask::Implementation;

// What a completed task has to say.
struct Task::Outcome {
  std::optional<Data> data;
  std::unique_ptr<DownloadedFile> file;
  URLResponsePtr response;
  std::optional<NSError> error;
  URLSessionDataTask::Completion dataCompletion;
  URLSessionDownloadTask::Completion downloadCompletion;
};

Task::Implementation(SessionPtr session, URLRequest request,
                     URLSessionDataTask::Completion completion)
    : session_(std::move(session)),
      request_(std::move(request)),
      dataCompletion_(std::move(completion)) {
  prepare(false);
}

Task::Implementation(SessionPtr session, URLRequest request,
                     URLSessionDownloadTask::Completion completion)
    : session_(std::move(session)),
      request_(std::move(request)),
      downloadCompletion_(std::move(completion)) {
  prepare(true);
}

void Task::prepare(bool isDownload) {
  problem_ = problemOf(request_);
  if (problem_) return;
  callPlatform("URLSession", [&] {
    NSURLRequest* const request = nativeRequest(request_);
    if (request == nil) return;
    NSURLSession* const session = session_->native();
    NSURLSessionTask* const task = isDownload ? [session downloadTaskWithRequest:request]
                                              : [session dataTaskWithRequest:request];
    native_ = Retained<NSURLSessionTask*>::retain(task);
  });
  if (!native_) problem_ = urlError(NSURLErrorBadURL);
}

// The platform's session would wait for a task that nobody can start any more.
Task::~Implementation() {
  if (state_ != State::suspended) return;
  callPlatform("URLSessionTask", [this] { [native() cancel]; });
}

URLSessionTask::State Task::state() const {
  const std::lock_guard lock(mutex_);
  return state_;
}

std::int64_t Task::received() const {
  const std::lock_guard lock(mutex_);
  return received_;
}

std::int64_t Task::expected() const {
  return askPlatform("URLSessionTask::countOfBytesExpectedToReceive", 0, [this] {
    const auto response = responseFrom([native() response]);
    return response ? response->expectedContentLength() : std::int64_t{0};
  });
}

// A task that gets under way is the session's before anybody else can see that it is.
bool Task::advance(State from, State to) {
  const std::lock_guard lock(mutex_);
  if (state_ != from) return false;
  if (from == State::suspended) session_->add(shared_from_this());
  state_ = to;
  return true;
}

void Task::resume() {
  if (!advance(State::suspended, State::running)) return;
  if (problem_) return completeSoon(*problem_);
  callPlatform("URLSessionTask::resume", [this] { [native() resume]; });
}

void Task::cancel() {
  const bool isFirst = advance(State::suspended, State::canceling);
  if (!isFirst && !advance(State::running, State::canceling)) return;
  if (problem_) return completeSoon(urlError(NSURLErrorCancelled));
  callPlatform("URLSessionTask::cancel", [this] { [native() cancel]; });
}

void Task::completeSoon(const NSError& error) {
  session_->async([self = shared_from_this(), error] { self->complete(nullptr, error); });
}

void Task::receive(NSData* data) {
  const auto bytes = dataFrom(data);
  const std::lock_guard lock(mutex_);
  received_ += static_cast<std::int64_t>(bytes.size());
  body_.insert(body_.end(), bytes.begin(), bytes.end());
}

void Task::wrote(std::int64_t bytes, std::int64_t total, std::int64_t expected) {
  {
    const std::lock_guard lock(mutex_);
    received_ = total;
  }
  auto* const delegate = session_->delegate();
  if (delegate == nullptr) return;
  URLSessionDownloadTask handle(shared_from_this());
  delegate->didWriteData(handle, bytes, total, expected < 0 ? kUnknownLength : expected);
}

void Task::finishDownload(NSURL* location) {
  auto file = std::make_unique<DownloadedFile>(textFrom([location path]));
  auto* const delegate = session_->delegate();
  const bool isForDelegate = !file->error() && !downloadCompletion_ && delegate != nullptr;
  if (isForDelegate) {
    URLSessionDownloadTask handle(shared_from_this());
    delegate->didFinishDownloadingTo(handle, file->url());
    file.reset();
  }
  const std::lock_guard lock(mutex_);
  file_ = std::move(file);
}

void Task::completeNative(::NSError* error) {
  complete(responseFrom([native() response]), optionalErrorFrom(error));
}

void Task::complete(URLResponsePtr response, std::optional<NSError> error) {
  Outcome outcome;
  {
    const std::lock_guard lock(mutex_);
    if (state_ == State::completed) return;
    state_ = State::completed;
    outcome.file = std::move(file_);
    outcome.data = std::exchange(body_, {});
    outcome.dataCompletion = std::exchange(dataCompletion_, nullptr);
    outcome.downloadCompletion = std::exchange(downloadCompletion_, nullptr);
  }
  if (!error && outcome.file) error = outcome.file->error();
  if (error || hasNoBody(request_, response)) outcome.data.reset();
  outcome.response = std::move(response);
  outcome.error = std::move(error);
  const auto self = shared_from_this();
  deliver(std::move(outcome));
  session_->remove(self);
}

void Task::deliver(Outcome outcome) {
  callBack("URLSessionTask::Completion", [&] {
    if (outcome.dataCompletion) {
      outcome.dataCompletion(std::move(outcome.data), outcome.response, outcome.error);
    }
    if (!outcome.downloadCompletion) return;
    const bool hasFile = outcome.file && !outcome.error;
    outcome.downloadCompletion(hasFile ? std::optional<URL>(outcome.file->url()) : std::nullopt,
                               outcome.response, outcome.error);
  });
}

}  // namespace Foundation
