#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Foundation/HTTPHeaderFields.hpp"
#include "platform/Foundation/URL.hpp"

namespace Foundation {

/// A length or a number of bytes that nobody knows.
inline constexpr std::int64_t kUnknownLength = -1;

/// What is known of an answer besides its bytes, whatever the scheme.
///
/// An immutable object, held by `URLResponsePtr`; `httpResponse` finds out whether HTTP was spoken.
/// Thread: any.
class URLResponse {
 public:
  struct Contents {
    /// Where the answer came from, after all redirects.
    std::optional<URL> url{};
    /// "text/html", in lower case and without parameters.
    std::optional<std::string> mimeType{};
    /// Bytes in the body, as they are handed out; `kUnknownLength` when nobody said, or when the
    /// body is decompressed on the way.
    std::int64_t expectedContentLength = kUnknownLength;
    /// The text encoding's name as the server says it: "utf-8".
    std::optional<std::string> textEncodingName{};
  };

  explicit URLResponse(Contents contents) : contents_(std::move(contents)) {}
  URLResponse(const URLResponse&) = delete;
  URLResponse& operator=(const URLResponse&) = delete;
  virtual ~URLResponse() = default;

  [[nodiscard]] const std::optional<URL>& url() const { return contents_.url; }
  [[nodiscard]] const std::optional<std::string>& mimeType() const { return contents_.mimeType; }
  [[nodiscard]] std::int64_t expectedContentLength() const {
    return contents_.expectedContentLength;
  }
  [[nodiscard]] const std::optional<std::string>& textEncodingName() const {
    return contents_.textEncodingName;
  }

 private:
  Contents contents_;
};

using URLResponsePtr = std::shared_ptr<const URLResponse>;

/// The answer of an HTTP server.
class HTTPURLResponse final : public URLResponse {
 public:
  HTTPURLResponse(Contents contents, std::int64_t statusCode, HTTPHeaderFields fields)
      : URLResponse(std::move(contents)), statusCode_(statusCode), fields_(std::move(fields)) {}

  [[nodiscard]] std::int64_t statusCode() const { return statusCode_; }
  /// The fields of the last answer, after all redirects. The values of a field that came several
  /// times are joined by ", ".
  [[nodiscard]] const HTTPHeaderFields& allHeaderFields() const { return fields_; }
  /// The value of that field, in any letter case.
  [[nodiscard]] std::optional<std::string> value(std::string_view forHTTPHeaderField) const;

 private:
  std::int64_t statusCode_;
  HTTPHeaderFields fields_;
};

/// The HTTP answer that `response` is; null when it is none, or null itself.
[[nodiscard]] std::shared_ptr<const HTTPURLResponse> httpResponse(const URLResponsePtr& response);

}  // namespace Foundation
