#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <utility>

#include "tools/tqstore/ProgressText.hpp"

namespace tqstore {

/// Shows on a terminal how far something has come, in one line that is written over and over; gone
/// when the object is. Writes to standard error, and nothing when that is no terminal.
///
///     ProgressBar bar("content.zip");
///     bar.show(bytesSoFar, bytesInAll);   // as often as one likes
///
/// Thread: one at a time.
class ProgressBar {
 public:
  /// `title` is printed as it is: make it `printable` when it comes from elsewhere.
  explicit ProgressBar(std::string title);
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  /// `total` below zero: nobody knows. The line changes at most ten times a second.
  void show(std::int64_t done, std::int64_t total);

  /// Takes the line away; `show` brings it back.
  void hide();

 private:
  using Clock = std::chrono::steady_clock;
  void sample(std::int64_t done, Clock::time_point now);
  void draw();

  Progress progress_;
  std::deque<std::pair<Clock::time_point, std::int64_t>> samples_;  // of the last seconds
  std::optional<Clock::time_point> drawn_;
  const bool isTerminal_;
};

}  // namespace tqstore
