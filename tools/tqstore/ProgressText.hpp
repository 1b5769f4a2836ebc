#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace tqstore {

/// How far something of many bytes has come.
struct Progress {
  std::string title{};
  std::int64_t done = 0;
  /// Below zero when nobody knows.
  std::int64_t total = -1;
  /// Bytes in a second; 0 while nobody knows.
  double speed = 0;
};

/// It on one line of at most `width` columns: how much of it, a bar where there is room for one,
/// bytes, speed and the time that is left. Without a total, bytes and speed.
[[nodiscard]] std::string progressText(const Progress& progress, int width);

/// "999 bytes", "1.5 kB", "12.0 MB": powers of a thousand.
[[nodiscard]] std::string byteText(std::int64_t bytes);

/// "0:09", "1:02:03".
[[nodiscard]] std::string timeText(std::chrono::seconds time);

}  // namespace tqstore
