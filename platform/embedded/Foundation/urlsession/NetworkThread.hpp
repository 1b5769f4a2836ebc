#pragma once

#include <poll.h>
#include <sys/types.h>

#include <array>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "platform/embedded/Dispatch/SerialQueue.hpp"
#include "platform/embedded/Foundation/urlsession/Timers.hpp"

namespace Foundation::detail {

/// Is told when its sockets can be read or written.
class SocketWatcher {
 public:
  virtual void socketIsReady(int socket, short events) = 0;

 protected:
  ~SocketWatcher() = default;
};

/// The one thread on which the process does all its networking.
///
/// Started by the first command, kept to the end of the process. When the process exits the thread
/// ends before anything that it uses is torn down; commands that come later do not run.
/// No user code runs or is destroyed on it.
class NetworkThread {
 public:
  using Command = std::function<void()>;

  /// Made on first use, never destroyed.
  [[nodiscard]] static NetworkThread& instance();

  /// Runs `command` on the thread, after those that came before. Thread: any.
  void post(Command command);

  /// The rest is for what runs on the thread.

  /// Hands `block` to `queue` when all has been done that there is to do now: the wire comes first,
  /// and a thread that is woken for one block finds the next ones too.
  void deliver(const Dispatch::SerialQueue& queue, Dispatch::SerialQueue::Block block);
  /// Watches a socket for poll's events POLLIN and POLLOUT; no events: not any more.
  void watch(int socket, short events, SocketWatcher* watcher);
  [[nodiscard]] Timers& timers() { return timers_; }
  /// When this turn of the loop began.
  [[nodiscard]] Clock::time_point now() const { return now_; }

 private:
  struct Ready {
    int socket;
    short events;
    SocketWatcher* watcher;
  };

  NetworkThread();
  void wake();
  void stop();
  void run();
  bool runCommands();
  void wait();
  void tellWatchers();
  void deliverAll();
  [[nodiscard]] int timeToWait() const;

  const pid_t process_;
  std::mutex mutex_;
  std::vector<Command> commands_;
  bool stopping_ = false;
  std::thread thread_;
  std::array<int, 2> wake_ = {-1, -1};  // a pipe that holds a byte while there are commands

  Timers timers_;
  Clock::time_point now_;
  std::vector<pollfd> polled_;            // the first is the pipe's
  std::vector<SocketWatcher*> watchers_;  // of the same places
  std::vector<Ready> ready_;
  std::vector<std::pair<Dispatch::SerialQueue, Dispatch::SerialQueue::Block>> toDeliver_;
};

}  // namespace Foundation::detail
