#pragma once

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

namespace tests {

/// What `work` answers with in a copy of this process; -1 when the copy was killed.
inline int inChild(const std::function<int()>& work) {
  const pid_t child = ::fork();
  if (child == 0) std::_Exit(work());
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// A program that takes orders on its standard input and answers on its standard output, a line
/// each. It is killed, if it still lives, with the object.
class ChildProgram {
 public:
  explicit ChildProgram(std::vector<std::string> command) {
    std::array<int, 2> in{};
    std::array<int, 2> out{};
    if (::pipe2(in.data(), O_CLOEXEC) != 0 || ::pipe2(out.data(), O_CLOEXEC) != 0) std::abort();
    child_ = ::fork();
    if (child_ == 0) {
      ::dup2(in[0], STDIN_FILENO);
      ::dup2(out[1], STDOUT_FILENO);
      std::vector<char*> arguments;
      for (auto& word : command) arguments.push_back(word.data());
      arguments.push_back(nullptr);
      ::execv(arguments[0], arguments.data());
      ::_exit(127);
    }
    ::close(in[0]);
    ::close(out[1]);
    orders_ = in[1];
    answers_ = out[0];
  }
  ~ChildProgram() {
    end(SIGKILL);
    ::close(answers_);
  }
  ChildProgram(const ChildProgram&) = delete;
  ChildProgram& operator=(const ChildProgram&) = delete;

  void order(const std::string& text) const {
    const auto line = text + '\n';
    if (::write(orders_, line.data(), line.size()) < 0) std::abort();
  }

  /// The next line; "(nothing)" when none comes within ten seconds.
  std::string line() {
    while (said_.find('\n') == std::string::npos) {
      pollfd waiting{.fd = answers_, .events = POLLIN, .revents = 0};
      std::array<char, 4096> bytes{};
      const auto count =
          ::poll(&waiting, 1, 10'000) > 0 ? ::read(answers_, bytes.data(), bytes.size()) : 0;
      if (count <= 0) return "(nothing)";
      said_.append(bytes.data(), static_cast<std::size_t>(count));
    }
    const auto end = said_.find('\n');
    auto result = said_.substr(0, end);
    said_.erase(0, end + 1);
    return result;
  }

  /// Gives an order and takes the answer.
  std::string ask(const std::string& text) {
    order(text);
    return line();
  }

  /// Sends the signal (0: only closes its input) and waits for the end. Answers with the signal
  /// that ended it; 0 when it ended by itself.
  int end(int signal) {
    if (child_ <= 0) return 0;
    if (signal != 0) ::kill(child_, signal);  // before it could see that its input has ended
    ::close(orders_);
    int status = 0;
    ::waitpid(child_, &status, 0);
    child_ = -1;
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  }

 private:
  pid_t child_ = -1;
  int orders_ = -1;
  int answers_ = -1;
  std::string said_;
};

}  // namespace tests
