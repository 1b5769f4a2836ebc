#include "tests/server/HttpMessage.hpp"

#include <strings.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstdio>

namespace tests {

namespace {

// Takes what stands before `separator` off `text`.
std::string_view take(std::string_view& text, std::string_view separator) {
  const auto end = text.find(separator);
  const auto taken = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + separator.size());
  return taken;
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

bool isSameName(const std::string& one, std::string_view other) {
  return one.size() == other.size() && ::strncasecmp(one.data(), other.data(), one.size()) == 0;
}

}  // namespace

std::string HttpRequest::query(std::string_view name, std::string fallback) const {
  std::string_view rest = target;
  (void)take(rest, "?");
  while (!rest.empty()) {
    auto value = take(rest, "&");
    if (take(value, "=") == name) return std::string(value);
  }
  return fallback;
}

std::string HttpRequest::header(std::string_view name) const {
  for (const auto& [key, value] : headers) {
    if (isSameName(key, name)) return value;
  }
  return "";
}

HttpRequest parseRequestHead(std::string_view head) {
  HttpRequest request;
  auto line = take(head, "\r\n");
  request.method = take(line, " ");
  request.target = take(line, " ");
  while (!head.empty()) {
    auto value = take(head, "\r\n");
    if (value.empty()) break;
    const auto name = take(value, ":");
    request.headers.emplace_back(name, trimmed(value));
  }
  return request;
}

std::string responseHead(int status, const HttpHeaders& headers) {
  auto head = "HTTP/1.1 " + std::to_string(status) + " Status\r\n";
  for (const auto& [name, value] : headers) head.append(name + ": " + value + "\r\n");
  return head + "\r\n";
}

std::string chunk(std::string_view bytes) {
  std::array<char, 20> size{};
  std::snprintf(size.data(), size.size(), "%zx\r\n", bytes.size());
  return size.data() + std::string(bytes) + "\r\n";
}

std::string gzipped(std::string_view bytes) {
  z_stream stream{};
  constexpr int kGzip = 15 + 16;
  deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kGzip, 8, Z_DEFAULT_STRATEGY);
  std::string result(deflateBound(&stream, bytes.size()), '\0');
  std::string input(bytes);
  stream.next_in = reinterpret_cast<Bytef*>(input.data());
  stream.avail_in = static_cast<uInt>(input.size());
  stream.next_out = reinterpret_cast<Bytef*>(result.data());
  stream.avail_out = static_cast<uInt>(result.size());
  deflate(&stream, Z_FINISH);
  result.resize(stream.total_out);
  deflateEnd(&stream);
  return result;
}

std::string patternedBytes(std::size_t count) {
  std::string bytes(count, '\0');
  unsigned state = 1;
  for (auto& byte : bytes) {
    state = state * 1664525U + 1013904223U;
    byte = static_cast<char>(state >> 24);
  }
  return bytes;
}

}  // namespace tests
