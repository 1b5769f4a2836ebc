#include "tests/server/Http2Answers.hpp"

#include <cstdint>

namespace tests {

namespace {

constexpr std::string_view kPreface = "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n";
constexpr std::size_t kFrameHead = 9;

enum FrameType : std::uint8_t { kData = 0, kHeaders = 1, kSettings = 4, kPing = 6 };
enum FrameFlags : std::uint8_t {
  kNone = 0,
  kAcknowledged = 1,
  kEndOfStream = 1,
  kEndOfHeaders = 4
};

struct Frame {
  std::uint8_t type = 0;
  std::uint8_t flags = 0;
  std::uint32_t stream = 0;
  std::string payload;
};

std::string number(std::uint32_t value, int bytes) {
  std::string text;
  for (int i = bytes - 1; i >= 0; --i) text += static_cast<char>(value >> (8 * i));
  return text;
}

std::uint32_t number(std::string_view text) {
  std::uint32_t value = 0;
  for (const char c : text) value = value << 8U | static_cast<unsigned char>(c);
  return value;
}

std::string frame(std::uint8_t type, std::uint8_t flags, std::uint32_t stream,
                  std::string_view payload) {
  return number(static_cast<std::uint32_t>(payload.size()), 3) + number(type, 1) +
         number(flags, 1) + number(stream, 4) + std::string(payload);
}

// Takes `count` bytes off the connection; false when the client is gone.
bool take(Peer& peer, std::string& bytes, std::size_t count, std::string& taken) {
  while (bytes.size() < count) {
    const auto more = peer.receive();
    if (more.empty()) return false;
    bytes += more;
  }
  taken = bytes.substr(0, count);
  bytes.erase(0, count);
  return true;
}

bool takeFrame(Peer& peer, std::string& bytes, Frame& frame) {
  std::string head;
  if (!take(peer, bytes, kFrameHead, head)) return false;
  const std::string_view view = head;
  frame.type = static_cast<std::uint8_t>(head[3]);
  frame.flags = static_cast<std::uint8_t>(head[4]);
  frame.stream = number(view.substr(5));
  return take(peer, bytes, number(view.substr(0, 3)), frame.payload);
}

std::string answerTo(const Frame& received) {
  constexpr std::string_view kStatus200 = "\x88";  // the eighth entry of HPACK's static table
  const bool isNew = (received.flags & kAcknowledged) == 0;
  if (received.type == kSettings && isNew) return frame(kSettings, kAcknowledged, 0, "");
  if (received.type == kPing && isNew) return frame(kPing, kAcknowledged, 0, received.payload);
  const bool hasBody = (received.flags & kEndOfStream) == 0;
  if (received.type != kHeaders || hasBody) return "";
  return frame(kHeaders, kEndOfHeaders, received.stream, kStatus200) +
         frame(kData, kEndOfStream, received.stream, "HTTP/2");
}

}  // namespace

void answerHttp2(Peer& peer, int connection, const std::function<void(const HttpRequest&)>& asked) {
  std::string bytes;
  std::string preface;
  if (!take(peer, bytes, kPreface.size(), preface) || preface != kPreface) return;
  peer.send(frame(kSettings, kNone, 0, ""));
  for (Frame received; takeFrame(peer, bytes, received);) {
    if (received.type == kHeaders) asked({.method = "HTTP/2", .connection = connection});
    peer.send(answerTo(received));
  }
}

}  // namespace tests
