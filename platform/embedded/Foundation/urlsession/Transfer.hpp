#pragma once

#include <curl/curl.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/embedded/Foundation/urlsession/ConnectionPool.hpp"
#include "platform/embedded/Foundation/urlsession/CurlRequest.hpp"
#include "platform/embedded/Foundation/urlsession/NetworkThread.hpp"
#include "platform/embedded/Foundation/urlsession/Redirect.hpp"
#include "platform/embedded/Foundation/urlsession/ResponseHead.hpp"

namespace Foundation::detail {

/// A task on the wire: from its first request over all redirects to its outcome, which it tells the
/// task exactly once.
///
/// Thread: the network thread.
class Transfer final : Timer {
 public:
  using TaskPtr = ConnectionPool::TaskPtr;

  Transfer(ConnectionPool& pool, NetworkThread& thread, TaskPtr task);
  ~Transfer() override;

  /// Sets on a new handle what all transfers do with what comes.
  static void applyFunctions(CURL* easy);

  /// Each may end the transfer and with it this object.
  void start();
  void cancel();
  void ended(CURLcode result);
  void handOverGathered();

  [[nodiscard]] const URLSessionTask::Implementation* key() const { return task_.get(); }

  /// For the pool: whom the request goes to, and the handle while it is on the wire, null before.
  [[nodiscard]] std::string_view site() const { return siteOf(request().url()); }
  [[nodiscard]] bool isSecure() const { return detail::isSecure(request().url()); }
  void apply(CURL* easy);
  [[nodiscard]] CURL* takeHandle() { return std::exchange(easy_, nullptr); }

 private:
  [[nodiscard]] const URLRequest& request() const;
  void send();
  void followRedirect();
  [[nodiscard]] std::optional<URL> location() const;
  [[nodiscard]] bool leadsElsewhere() const;
  void receiveHead();
  [[nodiscard]] std::optional<NSError> receiveBytes(std::string_view bytes);
  [[nodiscard]] std::optional<NSError> flush();
  void finish(std::optional<NSError> error);
  [[nodiscard]] NSError failureOf(CURLcode result) const;
  void timeHasCome() override;
  void somethingHappened() { lastSign_ = thread_.now(); }

  static std::size_t takeHead(char* line, std::size_t, std::size_t size, void* transfer);
  static std::size_t takeBody(char* bytes, std::size_t, std::size_t size, void* transfer);
  static int takeProgress(void* transfer, curl_off_t, curl_off_t, curl_off_t, curl_off_t sent);

  ConnectionPool& pool_;
  NetworkThread& thread_;
  TaskPtr task_;
  CURL* easy_ = nullptr;
  CurlRequest curlRequest_;
  std::optional<URLRequest> redirected_;
  int redirects_ = 0;
  ResponseHead head_;
  bool hasHead_ = false;  // the task knows the answer
  std::string gathered_;  // of the body, and not yet the task's
  curl_off_t sent_ = 0;
  Clock::duration patience_;
  Clock::time_point lastSign_;
  std::optional<NSError> problem_;  // why a callback refused to go on
  std::array<char, CURL_ERROR_SIZE> errorText_{};
};

}  // namespace Foundation::detail
