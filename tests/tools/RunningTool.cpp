#include "tests/tools/RunningTool.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>

namespace {

constexpr int kPatienceInMilliseconds = 20'000;

[[noreturn]] void become(std::vector<std::string> command, int output) {
  ::dup2(::open("/dev/null", O_RDONLY), STDIN_FILENO);
  ::dup2(output, STDOUT_FILENO);
  for (const char* name : {"TQSTORE_CONFIG", "TQSTORE_LEDGER"}) ::unsetenv(name);
  std::vector<char*> words;
  for (auto& word : command) words.push_back(word.data());
  words.push_back(nullptr);
  ::execv(words[0], words.data());
  ::_exit(127);
}

}  // namespace

RunningTool::RunningTool(const std::vector<std::string>& arguments)
    : RunningTool(TQSTORE_PROGRAM, arguments) {}

RunningTool::RunningTool(const std::string& program, const std::vector<std::string>& arguments) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) std::abort();
  std::vector<std::string> command{program};
  command.insert(command.end(), arguments.begin(), arguments.end());
  child_ = ::fork();
  if (child_ == 0) become(std::move(command), ends[1]);
  ::close(ends[1]);
  output_ = ends[0];
}

RunningTool::~RunningTool() {
  end(SIGKILL);
  ::close(output_);
}

std::string RunningTool::line() {
  while (said_.find('\n') == std::string::npos) {
    pollfd waiting{.fd = output_, .events = POLLIN, .revents = 0};
    std::array<char, 4096> bytes{};
    if (::poll(&waiting, 1, kPatienceInMilliseconds) <= 0) return "(nothing)";
    const auto count = ::read(output_, bytes.data(), bytes.size());
    if (count <= 0) return "(nothing)";
    said_.append(bytes.data(), static_cast<std::size_t>(count));
  }
  const auto end = said_.find('\n');
  auto result = said_.substr(0, end);
  said_.erase(0, end + 1);
  return result;
}

int RunningTool::end(int signal) {
  if (child_ <= 0) return -1;
  if (signal != 0) ::kill(child_, signal);
  int status = 0;
  ::waitpid(child_, &status, 0);
  child_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
