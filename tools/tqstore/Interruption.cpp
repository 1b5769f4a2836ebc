#include "tools/tqstore/Interruption.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <system_error>

#include "platform/embedded/Dispatch/MainLoop.hpp"

namespace tqstore {

namespace {

constexpr std::array<int, 2> kSignals = {SIGINT, SIGTERM};

// Where the handler writes: almost nothing else is allowed in one.
std::atomic<int> signalEnd = -1;
static_assert(std::atomic<int>::is_always_lock_free);

void noteSignal(int /*signal*/) {
  const int saved = errno;
  const char byte = 0;
  if (::write(signalEnd, &byte, 1) < 0) {
    // Full: it has been noted before.
  }
  errno = saved;
}

}  // namespace

Interruption::Interruption() {
  if (::pipe(ends_.data()) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  for (const int end : ends_) ::fcntl(end, F_SETFD, FD_CLOEXEC);
  ::fcntl(ends_[1], F_SETFL, O_NONBLOCK);
  signalEnd = ends_[1];
  thread_ = std::thread([this] { waitForByte(); });
  struct sigaction action{};
  action.sa_handler = noteSignal;
  action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    ::sigaction(kSignals[i], &action, &before_[i]);
  }
}

// Ends when the other end of the pipe is closed.
void Interruption::waitForByte() {
  char byte = 0;
  while (true) {
    const auto count = ::read(ends_[0], &byte, 1);
    if (count == 0 || (count < 0 && errno != EINTR)) return;
    if (count < 0) continue;
    hasCome_ = true;
    Dispatch::MainLoop::stop();
  }
}

Interruption::~Interruption() {
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    ::sigaction(kSignals[i], &before_[i], nullptr);
  }
  ::close(ends_[1]);
  thread_.join();
  ::close(ends_[0]);
}

}  // namespace tqstore
