#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <map>
#include <string>

namespace crash {

/// Programs that write lines into one pipe, so that these are in the order in which they were
/// written. Who is still alive is killed with the object.
class Programs {
 public:
  /// `hear` takes each line, without its end.
  Programs(std::string program, std::function<void(const std::string&)> hear);
  ~Programs();
  Programs(const Programs&) = delete;
  Programs& operator=(const Programs&) = delete;

  void start(const std::string& name, const std::string& ledger, const std::string& manner);

  /// Listens for that long. Throws `Broken` when one has ended by itself.
  void listenFor(std::chrono::microseconds duration);

  /// Listens until `heard` is true; throws `Broken` when that does not come, or one has ended by
  /// itself.
  void listenUntil(const std::function<bool()>& heard);

  /// Takes what was written before, and nothing else.
  void catchUp();

  /// Kills it and waits for its end.
  void kill(const std::string& name);

  /// Listens until it ends by itself; throws `Broken` when it does not end well.
  void waitForEnd(const std::string& name);

 private:
  using Clock = std::chrono::steady_clock;

  // False when nothing was there.
  bool readSome();
  void listenOnce(Clock::time_point end);
  void checkAlive();

  std::string program_;
  std::function<void(const std::string&)> hear_;
  int in_ = -1;
  int out_ = -1;
  std::map<std::string, pid_t> children_;
  std::string half_;  // a line whose end was not read yet
};

}  // namespace crash
