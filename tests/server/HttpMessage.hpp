#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tests {

/// A request as it came over the wire.
struct HttpRequest {
  std::string method{};
  std::string target{};  ///< as it stands in the first line, query included
  std::vector<std::pair<std::string, std::string>> headers{};
  std::string body{};
  int connection = 0;  ///< the server's number of the connection that it came on, from 1

  [[nodiscard]] std::string path() const { return target.substr(0, target.find('?')); }
  /// The value of NAME in "?NAME=value&..."; `fallback` when it is not there. Nothing is unescaped.
  [[nodiscard]] std::string query(std::string_view name, std::string fallback = "") const;
  /// The first field of this name, in whatever case; empty when there is none.
  [[nodiscard]] std::string header(std::string_view name) const;
};

using HttpHeaders = std::vector<std::pair<std::string, std::string>>;

/// Reads the head of a request, up to its empty line.
[[nodiscard]] HttpRequest parseRequestHead(std::string_view head);

/// The head of an answer, with its empty line. Nothing is added: no length, no date.
[[nodiscard]] std::string responseHead(int status, const HttpHeaders& headers);

/// `bytes` as one piece of a chunked body; the empty one ends the body.
[[nodiscard]] std::string chunk(std::string_view bytes);

/// `bytes` in gzip's format.
[[nodiscard]] std::string gzipped(std::string_view bytes);

/// So many bytes that differ from each other, the same each time.
[[nodiscard]] std::string patternedBytes(std::size_t count);

}  // namespace tests
