#pragma once

#include <curl/curl.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace bare {

/// Runs what it is handed on a thread of its own, in order.
class Worker {
 public:
  Worker();
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  void hand(std::function<void()> work);

 private:
  void run();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::function<void()>> works_;
  bool ending_ = false;
  std::thread thread_;
};

/// libcurl's multi interface as somebody would drive it by hand: one thread, handles that are used
/// again, heads and bodies in memory. It sends what a session sends, byte for byte, and has what no
/// client does without: a time-out, and cookies that its requests share. The callback runs on that thread, or on a worker's when there is one.
class Loader {
 public:
  using Done = std::function<void(const std::string& body)>;

  explicit Loader(Worker* worker = nullptr);
  ~Loader();
  Loader(const Loader&) = delete;
  Loader& operator=(const Loader&) = delete;

  void load(const std::string& url, Done done);

 private:
  struct Transfer;
  void run();
  void startAll();
  void endAll();

  Worker* worker_;
  CURLSH* share_;
  CURLM* multi_;
  std::mutex mutex_;
  std::vector<std::pair<std::string, Done>> waiting_;
  bool ending_ = false;
  std::vector<std::unique_ptr<Transfer>> spare_;
  std::thread thread_;
};

/// One download with libcurl's default buffer, on this thread, to a file that is removed.
void downloadToATemporaryFile(const std::string& url);

}  // namespace bare
