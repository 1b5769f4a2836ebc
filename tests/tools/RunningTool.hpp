#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

/// A program while it runs. It is killed, if it still lives, with the object.
class RunningTool {
 public:
  /// Starts tqstore with these arguments. Standard error is the test's own.
  explicit RunningTool(const std::vector<std::string>& arguments);
  /// Starts another program.
  RunningTool(const std::string& program, const std::vector<std::string>& arguments);
  ~RunningTool();
  RunningTool(const RunningTool&) = delete;
  RunningTool& operator=(const RunningTool&) = delete;

  /// The next line of its output; "(nothing)" when none comes within twenty seconds, or it ended.
  std::string line();

  /// Sends a signal (0: none) and waits for the end. The exit status; -1 when a signal ended it.
  int end(int signal);

 private:
  pid_t child_ = -1;
  int output_ = -1;
  std::string said_;
};
