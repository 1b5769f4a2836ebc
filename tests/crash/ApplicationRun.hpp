#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>

namespace crash {

/// One life of an application: started, listened to, killed.
class ApplicationRun {
 public:
  ApplicationRun(const std::string& program, const std::string& ledger, const std::string& seed);
  ~ApplicationRun();
  ApplicationRun(const ApplicationRun&) = delete;
  ApplicationRun& operator=(const ApplicationRun&) = delete;

  /// Listens until the application has said something. False when it ended instead.
  [[nodiscard]] bool waitForWord();

  /// Listens for that long. False when the application ended meanwhile.
  [[nodiscard]] bool listenFor(std::chrono::microseconds duration);

  /// Kills it, waits for its end, and answers with everything that it said.
  [[nodiscard]] std::string kill();

 private:
  [[nodiscard]] bool readSome();

  pid_t child_ = -1;
  int pipe_ = -1;
  std::string said_;
};

}  // namespace crash
