#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Foundation/HTTPHeaderFields.hpp"
#include "platform/Foundation/URLResponse.hpp"

namespace Foundation::detail {

/// The first line and the fields of an answer, as they come line by line.
class ResponseHead {
 public:
  /// False when the head has grown beyond what is taken. A first line ("HTTP/...") begins anew, so
  /// that of several heads the last one counts.
  [[nodiscard]] bool add(std::string_view line);

  [[nodiscard]] int status() const { return status_; }
  /// The value of a field; empty when there is none.
  [[nodiscard]] std::string_view field(std::string_view name) const;
  /// Whether the answer to a request with this method has a body, be it an empty one.
  [[nodiscard]] bool hasBody(std::string_view method) const;

  /// The answer that the head describes, which takes the fields along. `length`: bytes of the body
  /// on the wire, or below zero.
  [[nodiscard]] URLResponsePtr takeResponse(const URL& url, std::int64_t length);

 private:
  void begin(std::string_view statusLine);
  void addField(std::string_view line);

  int status_ = 0;
  HTTPHeaderFields fields_;
  std::string lastName_;
  std::size_t size_ = 0;
};

}  // namespace Foundation::detail
