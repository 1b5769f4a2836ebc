#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Foundation/Data.hpp"
#include "platform/Foundation/HTTPHeaderFields.hpp"
#include "platform/Foundation/URL.hpp"

namespace Foundation {

/// One request for an address, before it is sent.
///
/// Nothing is checked here. A method or a field that no HTTP message can carry (a name that is no
/// token, a value with a line break or a NUL in it) makes the task fail, and nothing is sent.
/// Thread: a plain value.
class URLRequest {
 public:
  /// Where an answer may come from. The platform's numbers.
  enum class CachePolicy : std::uint64_t {
    useProtocolCachePolicy = 0,
    reloadIgnoringLocalCacheData = 1,
    returnCacheDataElseLoad = 2,
    returnCacheDataDontLoad = 3,
    reloadIgnoringLocalAndRemoteCacheData = 4,
    reloadRevalidatingCacheData = 5,
  };
  using Seconds = std::chrono::duration<double>;

  /// A GET without fields and body.
  explicit URLRequest(URL url, CachePolicy cachePolicy = CachePolicy::useProtocolCachePolicy,
                      Seconds timeoutInterval = Seconds(60))
      : url_(std::move(url)), cachePolicy_(cachePolicy), timeoutInterval_(timeoutInterval) {}

  [[nodiscard]] const URL& url() const { return url_; }
  void setURL(URL url) { url_ = std::move(url); }

  [[nodiscard]] CachePolicy cachePolicy() const { return cachePolicy_; }
  void setCachePolicy(CachePolicy policy) { cachePolicy_ = policy; }

  /// How long nothing may happen before the task fails; each byte that comes starts it again.
  [[nodiscard]] Seconds timeoutInterval() const { return timeoutInterval_; }
  void setTimeoutInterval(Seconds interval) { timeoutInterval_ = interval; }

  [[nodiscard]] const std::string& httpMethod() const { return httpMethod_; }
  void setHTTPMethod(std::string method) { httpMethod_ = std::move(method); }

  /// Sent as it is, whatever the method; absent is not the same as empty.
  [[nodiscard]] const std::optional<Data>& httpBody() const { return httpBody_; }
  void setHTTPBody(std::optional<Data> body) { httpBody_ = std::move(body); }

  /// Replaces the field of that name in any letter case; it is then spelled as here. An absent
  /// `value` removes it.
  void setValue(std::optional<std::string> value, std::string_view forHTTPHeaderField);
  /// The value of that field, in any letter case.
  [[nodiscard]] std::optional<std::string> value(std::string_view forHTTPHeaderField) const;
  [[nodiscard]] const HTTPHeaderFields& allHTTPHeaderFields() const { return fields_; }

 private:
  URL url_;
  CachePolicy cachePolicy_;
  Seconds timeoutInterval_;
  std::string httpMethod_ = "GET";
  std::optional<Data> httpBody_;
  HTTPHeaderFields fields_;
};

}  // namespace Foundation
