#include "platform/embedded/Foundation/urlsession/Transfer.hpp"

#include <chrono>

#include "platform/embedded/Foundation/urlsession/SessionTask.hpp"
#include "platform/embedded/Foundation/urlsession/TransferError.hpp"
#include "platform/embedded/Foundation/urlsession/URLErrors.hpp"

namespace Foundation::detail {

namespace {

constexpr int kMostRedirects = 20;

// What is no length of time counts as the default.
Clock::duration patienceOf(const URLRequest& request) {
  constexpr URLRequest::Seconds kDefault(60);
  constexpr URLRequest::Seconds kLongest(365.0 * 24 * 60 * 60);
  const auto interval = request.timeoutInterval();
  const auto seconds = interval.count() > 0 ? std::min(interval, kLongest) : kDefault;
  return std::chrono::duration_cast<Clock::duration>(seconds);
}

}  // namespace

Transfer::Transfer(ConnectionPool& pool, NetworkThread& thread, TaskPtr task)
    : Timer(thread.timers()),
      pool_(pool),
      thread_(thread),
      task_(std::move(task)),
      patience_(patienceOf(task_->originalRequest())),
      lastSign_(Clock::now()) {}

Transfer::~Transfer() = default;

const URLRequest& Transfer::request() const {
  return redirected_ ? *redirected_ : task_->originalRequest();
}

void Transfer::start() {
  if (auto problem = problemOf(request())) return finish(std::move(problem));
  set(lastSign_ + patience_);
  send();
}

void Transfer::cancel() {
  pool_.remove(*this);
  finish(urlError(NSURLErrorCancelled, request().url()));
}

void Transfer::send() {
  head_ = {};
  sent_ = 0;
  pool_.add(*this);
}

void Transfer::apply(CURL* easy) {
  easy_ = easy;
  curlRequest_.apply(request(), easy);
  curl_easy_setopt(easy, CURLOPT_BUFFERSIZE, task_->bufferSize());
  curl_easy_setopt(easy, CURLOPT_PRIVATE, this);
  curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, errorText_.data());
  curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
  curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
  curl_easy_setopt(easy, CURLOPT_NOPROGRESS, request().httpBody() ? 0L : 1L);
  curl_easy_setopt(easy, CURLOPT_XFERINFODATA, this);
}

void Transfer::applyFunctions(CURL* easy) {
  curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, takeHead);
  curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, takeBody);
  curl_easy_setopt(easy, CURLOPT_XFERINFOFUNCTION, takeProgress);
}

void Transfer::ended(CURLcode result) {
  if (!problem_) problem_ = flush();
  auto failure = std::exchange(problem_, std::nullopt);
  if (!failure && result != CURLE_OK) failure = failureOf(result);
  if (!failure && leadsElsewhere()) return followRedirect();
  if (!failure) {
    receiveHead();
    failure = std::exchange(problem_, std::nullopt);
  }
  pool_.remove(*this);
  finish(std::move(failure));
}

void Transfer::followRedirect() {
  const auto next = location();
  pool_.remove(*this);
  const auto& here = request().url();
  if (!next) return finish(urlError(NSURLErrorRedirectToNonExistentLocation, here));
  if (++redirects_ > kMostRedirects) return finish(urlError(NSURLErrorHTTPTooManyRedirects, *next));
  redirected_ = redirected(request(), head_.status(), *next);
  if (auto problem = problemOf(request())) return finish(std::move(problem));
  send();
}

std::optional<URL> Transfer::location() const {
  const char* text = nullptr;
  curl_easy_getinfo(easy_, CURLINFO_REDIRECT_URL, &text);
  return URL::withString(text != nullptr ? text : "");
}

bool Transfer::leadsElsewhere() const {
  return isRedirect(head_.status()) && !head_.field("Location").empty();
}

// The head is complete: the task hears of it, once.
void Transfer::receiveHead() {
  if (std::exchange(hasHead_, true)) return;
  curl_off_t length = kUnknownLength;
  curl_easy_getinfo(easy_, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
  auto response = head_.takeResponse(request().url(), length);
  problem_ = task_->receiveResponse(std::move(response), head_.hasBody(request().httpMethod()));
}

// Whatever has been received, libcurl gives it out in pieces of CURL_MAX_WRITE_SIZE.
std::optional<NSError> Transfer::receiveBytes(std::string_view bytes) {
  const auto most = static_cast<std::size_t>(task_->bufferSize());
  if (most <= CURL_MAX_WRITE_SIZE) return task_->receiveBytes(bytes);
  if (gathered_.size() + bytes.size() > most) {
    if (auto problem = flush()) return problem;
  }
  gathered_.reserve(most);
  gathered_ += bytes;
  pool_.handOverLater(*this);
  return std::nullopt;
}

std::optional<NSError> Transfer::flush() {
  if (gathered_.empty()) return std::nullopt;
  auto problem = task_->receiveBytes(gathered_);
  gathered_.clear();
  return problem;
}

void Transfer::handOverGathered() {
  auto failure = flush();
  if (!failure) return;
  pool_.remove(*this);
  finish(std::move(failure));
}

// Nothing of this object may be used afterwards.
void Transfer::finish(std::optional<NSError> error) {
  clear();
  const auto& queue = task_->queue();
  thread_.deliver(queue, URLSessionTask::Implementation::ending(task_, std::move(error)));
  pool_.forget(*this);
}

NSError Transfer::failureOf(CURLcode result) const {
  CurlFailure failure{.code = result, .text = errorText_.data()};
  curl_easy_getinfo(easy_, CURLINFO_OS_ERRNO, &failure.systemError);
  curl_easy_getinfo(easy_, CURLINFO_SSL_VERIFYRESULT, &failure.certificateError);
  curl_easy_getinfo(easy_, CURLINFO_HTTP_CONNECTCODE, &failure.proxyStatus);
  return transferError(failure, request().url(), networkIsUp());
}

void Transfer::timeHasCome() {
  const auto end = lastSign_ + patience_;
  if (end > thread_.now()) return set(end);
  pool_.remove(*this);
  finish(urlError(NSURLErrorTimedOut, request().url()));
}

std::size_t Transfer::takeHead(char* line, std::size_t, std::size_t size, void* transfer) {
  auto& self = *static_cast<Transfer*>(transfer);
  self.somethingHappened();
  if (self.hasHead_ || self.head_.add({line, size})) return size;
  self.problem_ = urlError(NSURLErrorDataLengthExceedsMaximum, self.request().url());
  return 0;
}

std::size_t Transfer::takeBody(char* bytes, std::size_t, std::size_t size, void* transfer) {
  auto& self = *static_cast<Transfer*>(transfer);
  self.somethingHappened();
  if (!self.hasHead_) {
    if (self.leadsElsewhere()) return size;
    self.receiveHead();
  }
  if (!self.problem_) self.problem_ = self.receiveBytes({bytes, size});
  return self.problem_ ? 0 : size;
}

int Transfer::takeProgress(void* transfer, curl_off_t, curl_off_t, curl_off_t, curl_off_t sent) {
  auto& self = *static_cast<Transfer*>(transfer);
  if (std::exchange(self.sent_, sent) != sent) self.somethingHappened();
  return 0;
}

}  // namespace Foundation::detail
