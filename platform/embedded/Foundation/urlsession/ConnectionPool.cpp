#include "platform/embedded/Foundation/urlsession/ConnectionPool.hpp"

#include <chrono>
#include <utility>

#include "platform/embedded/Foundation/urlsession/CurlRequest.hpp"
#include "platform/embedded/Foundation/urlsession/SessionTask.hpp"
#include "platform/embedded/Foundation/urlsession/Transfer.hpp"

namespace Foundation::detail {

namespace {

constexpr long kConnectionsToAHost = Turns::kAtATime;
constexpr long kConnectionsKept = 32;
constexpr std::size_t kSpareHandles = 64;

int curlEvents(short events) {
  int result = 0;
  if ((events & (POLLIN | POLLHUP)) != 0) result |= CURL_CSELECT_IN;
  if ((events & POLLOUT) != 0) result |= CURL_CSELECT_OUT;
  if ((events & (POLLERR | POLLNVAL)) != 0) result |= CURL_CSELECT_ERR;
  return result;
}

short pollEvents(int what) {
  int result = 0;
  if (what == CURL_POLL_IN || what == CURL_POLL_INOUT) result |= POLLIN;
  if (what == CURL_POLL_OUT || what == CURL_POLL_INOUT) result |= POLLOUT;
  return static_cast<short>(result);
}

}  // namespace

ConnectionPool::ConnectionPool()
    : Timer(NetworkThread::instance().timers()), thread_(NetworkThread::instance()) {}

ConnectionPool::~ConnectionPool() = default;

void ConnectionPool::open() {
  share_.reset(curl_share_init());
  curl_share_setopt(share_.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_COOKIE);
  curl_share_setopt(share_.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_SSL_SESSION);
  multi_.reset(curl_multi_init());
  auto* const multi = multi_.get();
  curl_multi_setopt(multi, CURLMOPT_MAX_HOST_CONNECTIONS, kConnectionsToAHost);
  curl_multi_setopt(multi, CURLMOPT_MAXCONNECTS, kConnectionsKept);
  curl_multi_setopt(multi, CURLMOPT_SOCKETFUNCTION, watchSocket);
  curl_multi_setopt(multi, CURLMOPT_SOCKETDATA, this);
  curl_multi_setopt(multi, CURLMOPT_TIMERFUNCTION, setTimer);
  curl_multi_setopt(multi, CURLMOPT_TIMERDATA, this);
}

void ConnectionPool::start(TaskPtr task) {
  if (!multi_) open();
  const auto* const key = task.get();
  auto& transfer = transfers_[key];
  transfer = std::make_unique<Transfer>(*this, thread_, std::move(task));
  transfer->start();
}

void ConnectionPool::cancel(const URLSessionTask::Implementation* task) {
  const auto found = transfers_.find(task);
  if (found != transfers_.end()) found->second->cancel();
}

void ConnectionPool::forget(const Transfer& transfer) {
  std::erase(gathering_, &transfer);
  transfers_.erase(transfer.key());
}

CURL* ConnectionPool::takeHandle() {
  if (spare_.empty()) {
    auto* const handle = curl_easy_init();
    applyCommonOptions(handle, share_.get());
    Transfer::applyFunctions(handle);
    return handle;
  }
  auto* const handle = spare_.back().release();
  spare_.pop_back();
  return handle;
}

void ConnectionPool::giveBack(CURL* handle) {
  if (spare_.size() < kSpareHandles) {
    spare_.emplace_back(handle);
  } else {
    curl_easy_cleanup(handle);
  }
}

void ConnectionPool::begin(Transfer& transfer) {
  auto* const handle = takeHandle();
  transfer.apply(handle);
  curl_multi_add_handle(multi_.get(), handle);
}

// Over TLS a connection may take more than one transfer at a time, which libcurl alone knows.
void ConnectionPool::add(Transfer& transfer) {
  if (transfer.isSecure() || turns_.ask(transfer.site(), transfer)) begin(transfer);
}

// Of HTTP/2 libcurl would keep the connection; it does when others are using it.
void ConnectionPool::remove(Transfer& transfer) {
  auto* const handle = transfer.takeHandle();
  if (handle == nullptr) return turns_.stopWaiting(transfer.site(), transfer);
  curl_easy_setopt(handle, CURLOPT_FORBID_REUSE, 1L);
  curl_multi_remove_handle(multi_.get(), handle);
  curl_easy_setopt(handle, CURLOPT_FORBID_REUSE, 0L);
  giveBack(handle);
  if (auto* const next = turns_.next(transfer.site())) begin(*next);
}

void ConnectionPool::socketIsReady(int socket, short events) { act(socket, curlEvents(events)); }
void ConnectionPool::timeHasCome() { act(CURL_SOCKET_TIMEOUT, 0); }

void ConnectionPool::act(curl_socket_t socket, int events) {
  int running = 0;
  curl_multi_socket_action(multi_.get(), socket, events, &running);
  tellEnded();
  handOverAll();
}

void ConnectionPool::handOverLater(Transfer& transfer) {
  if (gathering_.empty() || gathering_.back() != &transfer) gathering_.push_back(&transfer);
}

// Each may end its transfer.
void ConnectionPool::handOverAll() {
  while (!gathering_.empty()) {
    auto& transfer = *gathering_.back();
    gathering_.pop_back();
    transfer.handOverGathered();
  }
}

void ConnectionPool::tellEnded() {
  int left = 0;
  while (const auto* message = curl_multi_info_read(multi_.get(), &left)) {
    if (message->msg != CURLMSG_DONE) continue;
    const auto result = message->data.result;
    char* transfer = nullptr;
    curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &transfer);
    reinterpret_cast<Transfer*>(transfer)->ended(result);
  }
}

int ConnectionPool::watchSocket(CURL*, curl_socket_t socket, int what, void* pool, void*) {
  auto& self = *static_cast<ConnectionPool*>(pool);
  self.thread_.watch(socket, pollEvents(what), &self);
  return 0;
}

int ConnectionPool::setTimer(CURLM*, long milliseconds, void* pool) {
  auto& self = *static_cast<ConnectionPool*>(pool);
  if (milliseconds < 0) {
    self.clear();
  } else {
    self.set(self.thread_.now() + std::chrono::milliseconds(milliseconds));
  }
  return 0;
}

}  // namespace Foundation::detail
