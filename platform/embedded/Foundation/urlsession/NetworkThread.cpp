#include "platform/embedded/Foundation/urlsession/NetworkThread.hpp"

#include <curl/curl.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "platform/embedded/Dispatch/SystemThread.hpp"

namespace Foundation::detail {

namespace {

void makePipe(std::array<int, 2>& ends) {
  if (::pipe(ends.data()) != 0) return;
  for (const int end : ends) {
    ::fcntl(end, F_SETFL, O_NONBLOCK);
    ::fcntl(end, F_SETFD, FD_CLOEXEC);
  }
}

}  // namespace

NetworkThread& NetworkThread::instance() {
  static auto& thread = *new NetworkThread;
  return thread;
}

// What is registered last runs first at the exit: the thread has ended when TLS is torn down.
NetworkThread::NetworkThread() : process_(::getpid()) {
  makePipe(wake_);
  polled_.push_back({.fd = wake_[0], .events = POLLIN, .revents = 0});
  watchers_.push_back(nullptr);
  curl_global_init(CURL_GLOBAL_DEFAULT);
  std::atexit([] { instance().stop(); });
}

void NetworkThread::post(Command command) {
  bool isFirst = false;
  {
    const std::lock_guard lock(mutex_);
    isFirst = commands_.empty();
    commands_.push_back(std::move(command));
    if (!thread_.joinable() && !stopping_) {
      thread_ = Dispatch::startSystemThread("TQ network", [this] { run(); });
    }
  }
  if (isFirst) wake();
}

void NetworkThread::wake() {
  const char byte = 0;
  (void)!::write(wake_[1], &byte, 1);  // full: it wakes anyway
}

void NetworkThread::stop() {
  if (::getpid() != process_) return;  // a copy of the process has no such thread
  std::thread thread;
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    thread = std::move(thread_);
  }
  wake();
  if (thread.joinable()) thread.join();
}

void NetworkThread::run() {
  now_ = Clock::now();
  while (runCommands()) {
    timers_.run(now_);
    deliverAll();
    wait();
    now_ = Clock::now();
    tellWatchers();
  }
}

// False when the thread is to end.
bool NetworkThread::runCommands() {
  std::vector<Command> commands;
  {
    const std::lock_guard lock(mutex_);
    if (stopping_) return false;
    commands.swap(commands_);
  }
  for (auto& command : commands) {
    command();
    command = nullptr;
  }
  return true;
}

void NetworkThread::deliver(const Dispatch::SerialQueue& queue,
                            Dispatch::SerialQueue::Block block) {
  toDeliver_.emplace_back(queue, std::move(block));
}

void NetworkThread::deliverAll() {
  for (auto& [queue, block] : toDeliver_) queue.async(std::move(block));
  toDeliver_.clear();
}

int NetworkThread::timeToWait() const {
  constexpr auto kLongest = std::chrono::hours(1);
  const auto next = timers_.earliest();
  if (!next) return -1;
  const auto left = std::min<Clock::duration>(*next - now_, kLongest);
  const auto rounded = std::chrono::ceil<std::chrono::milliseconds>(left).count();
  return static_cast<int>(std::max<long long>(rounded, 0));
}

void NetworkThread::wait() {
  ready_.clear();
  if (::poll(polled_.data(), static_cast<nfds_t>(polled_.size()), timeToWait()) <= 0) return;
  if (polled_[0].revents != 0) {
    std::array<char, 16> bytes{};
    while (::read(wake_[0], bytes.data(), bytes.size()) == ssize_t{bytes.size()}) {
    }
  }
  for (std::size_t i = 1; i < polled_.size(); ++i) {
    if (polled_[i].revents == 0) continue;
    ready_.push_back({polled_[i].fd, polled_[i].revents, watchers_[i]});
  }
}

// What one watcher does may end another's interest, so each is looked up again.
void NetworkThread::tellWatchers() {
  for (const auto& [socket, events, watcher] : ready_) {
    for (std::size_t i = 1; i < polled_.size(); ++i) {
      if (polled_[i].fd != socket || watchers_[i] != watcher) continue;
      watcher->socketIsReady(socket, events);
      break;
    }
  }
}

void NetworkThread::watch(int socket, short events, SocketWatcher* watcher) {
  std::size_t place = 1;
  while (place < polled_.size() && polled_[place].fd != socket) ++place;
  if (events == 0) {
    if (place == polled_.size()) return;
    std::swap(polled_[place], polled_.back());
    std::swap(watchers_[place], watchers_.back());
    polled_.pop_back();
    watchers_.pop_back();
  } else {
    if (place == polled_.size()) {
      polled_.emplace_back();
      watchers_.emplace_back();
    }
    polled_[place] = {.fd = socket, .events = events, .revents = 0};
    watchers_[place] = watcher;
  }
}

}  // namespace Foundation::detail
