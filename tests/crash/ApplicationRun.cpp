#include "tests/crash/ApplicationRun.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>
#include <vector>

namespace crash {

namespace {

using Clock = std::chrono::steady_clock;

[[noreturn]] void become(std::vector<std::string> command, int output) {
  ::dup2(output, STDOUT_FILENO);
  ::dup2(output, STDERR_FILENO);
  std::vector<char*> arguments;
  for (auto& word : command) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  ::execv(arguments[0], arguments.data());
  ::_exit(127);
}

timespec timeUntil(Clock::time_point end) {
  const auto left = std::chrono::nanoseconds(end - Clock::now()).count();
  return {.tv_sec = left / 1'000'000'000, .tv_nsec = left % 1'000'000'000};
}

}  // namespace

ApplicationRun::ApplicationRun(const std::string& program, const std::string& ledger,
                               const std::string& seed) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("there is no pipe left");
  child_ = ::fork();
  if (child_ == 0) become({program, ledger, seed}, ends[1]);
  ::close(ends[1]);
  pipe_ = ends[0];
  if (child_ < 0) throw std::runtime_error("there is no process left");
}

ApplicationRun::~ApplicationRun() {
  if (child_ > 0) (void)kill();
  ::close(pipe_);
}

bool ApplicationRun::readSome() {
  std::array<char, 1 << 16> bytes{};
  const auto count = ::read(pipe_, bytes.data(), bytes.size());
  if (count > 0) said_.append(bytes.data(), static_cast<std::size_t>(count));
  return count > 0;
}

bool ApplicationRun::waitForWord() {
  while (said_.find('\n') == std::string::npos) {
    if (!readSome()) return false;
  }
  return true;
}

bool ApplicationRun::listenFor(std::chrono::microseconds duration) {
  const auto end = Clock::now() + duration;
  while (Clock::now() < end) {
    pollfd waiting{.fd = pipe_, .events = POLLIN, .revents = 0};
    const auto left = timeUntil(end);
    if (left.tv_nsec < 0 || left.tv_sec < 0) break;
    if (::ppoll(&waiting, 1, &left, nullptr) > 0 && !readSome()) return false;
  }
  return true;
}

std::string ApplicationRun::kill() {
  ::kill(child_, SIGKILL);
  ::waitpid(child_, nullptr, 0);
  child_ = -1;
  while (readSome()) {
    // Up to the end of the pipe: nobody else holds it.
  }
  return said_;
}

}  // namespace crash
