#include "tests/crash/programs/Programs.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <utility>
#include <vector>

#include "tests/crash/Broken.hpp"

namespace crash {

namespace {

constexpr std::chrono::seconds kPatience(30);
constexpr std::chrono::milliseconds kBetweenLooks(20);

[[noreturn]] void become(std::vector<std::string> command, int output) {
  ::dup2(output, STDOUT_FILENO);
  ::dup2(output, STDERR_FILENO);
  std::vector<char*> arguments;
  for (auto& word : command) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  ::execv(arguments[0], arguments.data());
  ::_exit(127);
}

}  // namespace

Programs::Programs(std::string program, std::function<void(const std::string&)> hear)
    : program_(std::move(program)), hear_(std::move(hear)) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("there is no pipe left");
  in_ = ends[0];
  out_ = ends[1];
  (void)::fcntl(in_, F_SETFL, O_NONBLOCK);
}

Programs::~Programs() {
  while (!children_.empty()) kill(std::string(children_.begin()->first));
  ::close(in_);
  ::close(out_);
}

void Programs::start(const std::string& name, const std::string& ledger,
                     const std::string& manner) {
  const pid_t child = ::fork();
  if (child == 0) become({program_, ledger, name, manner}, out_);
  if (child < 0) throw std::runtime_error("there is no process left");
  children_[name] = child;
}

bool Programs::readSome() {
  std::array<char, 1 << 16> bytes{};
  const auto count = ::read(in_, bytes.data(), bytes.size());
  if (count <= 0) return false;
  half_.append(bytes.data(), static_cast<std::size_t>(count));
  std::size_t begin = 0;
  for (auto end = half_.find('\n'); end != std::string::npos; end = half_.find('\n', begin)) {
    hear_(half_.substr(begin, end - begin));
    begin = end + 1;
  }
  half_.erase(0, begin);
  return true;
}

void Programs::listenOnce(Clock::time_point end) {
  const auto left = std::chrono::nanoseconds(end - Clock::now()).count();
  const timespec wait{.tv_sec = 0, .tv_nsec = std::clamp<long>(left, 0, 999'999'999)};
  pollfd waiting{.fd = in_, .events = POLLIN, .revents = 0};
  if (::ppoll(&waiting, 1, &wait, nullptr) > 0) (void)readSome();
}

void Programs::catchUp() {
  while (readSome()) {
    // Until nothing is there.
  }
}

void Programs::checkAlive() {
  for (const auto& [name, child] : children_) {
    siginfo_t ended{};
    const int status =
        ::waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOHANG | WNOWAIT);
    if (status == 0 && ended.si_pid == 0) continue;
    catchUp();
    throw Broken(name + " ended by itself");
  }
}

void Programs::listenFor(std::chrono::microseconds duration) {
  const auto end = Clock::now() + duration;
  while (Clock::now() < end) listenOnce(end);
  checkAlive();
}

void Programs::listenUntil(const std::function<bool()>& heard) {
  const auto end = Clock::now() + kPatience;
  while (!heard()) {
    if (Clock::now() > end) throw Broken("a program does not say what it should");
    listenOnce(Clock::now() + kBetweenLooks);
    checkAlive();
  }
}

void Programs::kill(const std::string& name) {
  const auto child = children_.at(name);
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  children_.erase(name);
}

void Programs::waitForEnd(const std::string& name) {
  const auto child = children_.at(name);
  const auto end = Clock::now() + kPatience;
  int status = 0;
  while (::waitpid(child, &status, WNOHANG) == 0) {
    if (Clock::now() > end) throw Broken(name + " does not end");
    listenOnce(Clock::now() + kBetweenLooks);
  }
  children_.erase(name);
  catchUp();
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) throw Broken(name + " ended badly");
}

}  // namespace crash
