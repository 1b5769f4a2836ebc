#pragma once

#include <curl/curl.h>

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "platform/Foundation/URLSessionTask.hpp"
#include "platform/embedded/Foundation/urlsession/NetworkThread.hpp"
#include "platform/embedded/Foundation/urlsession/Turns.hpp"

namespace Foundation::detail {

class Transfer;

/// What the tasks of one session share on the wire: connections (at most six to a host at a time;
/// further transfers wait), cookies, TLS sessions. And the transfers under way.
///
/// Thread: the network thread, also for its end; it may be made on any.
class ConnectionPool final : SocketWatcher, Timer {
 public:
  using TaskPtr = std::shared_ptr<URLSessionTask::Implementation>;

  ConnectionPool();
  ~ConnectionPool() override;

  /// Begins a transfer for `task`, and ends it with the cancelled error if it is still under way.
  void start(TaskPtr task);
  void cancel(const URLSessionTask::Implementation* task);

  /// For transfers: puts one on the wire as soon as it is its turn, and takes it off, or lets it wait
  /// no longer. One that is taken off before its end loses its connection.
  void add(Transfer& transfer);
  void remove(Transfer& transfer);
  /// The transfer has gathered bytes, and is to hand them over when no more are there just now.
  void handOverLater(Transfer& transfer);
  /// The transfer is over; it is destroyed in this call.
  void forget(const Transfer& transfer);

 private:
  void open();
  [[nodiscard]] CURL* takeHandle();
  void giveBack(CURL* handle);
  void begin(Transfer& transfer);
  void socketIsReady(int socket, short events) override;
  void timeHasCome() override;
  void act(curl_socket_t socket, int events);
  void tellEnded();
  void handOverAll();
  static int watchSocket(CURL*, curl_socket_t socket, int what, void* pool, void*);
  static int setTimer(CURLM*, long milliseconds, void* pool);

  struct FreeEasy {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
  };
  struct FreeMulti {
    void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
  };
  struct FreeShare {
    void operator()(CURLSH* share) const { curl_share_cleanup(share); }
  };

  NetworkThread& thread_;
  std::unique_ptr<CURLSH, FreeShare> share_;
  std::unique_ptr<CURLM, FreeMulti> multi_;
  std::vector<std::unique_ptr<CURL, FreeEasy>> spare_;
  Turns turns_;
  std::vector<Transfer*> gathering_;
  std::unordered_map<const URLSessionTask::Implementation*, std::unique_ptr<Transfer>> transfers_;
};

}  // namespace Foundation::detail
