#include "tools/tqstore/ProgressText.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <initializer_list>

namespace tqstore {

namespace {

constexpr int kShortestBar = 10;
constexpr int kLongestBar = 40;

template <class... Values>
std::string formatted(const char* format, Values... values) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), format, values...);
  return text.data();
}

double fraction(const Progress& progress) {
  if (progress.total <= 0) return 1;
  const auto part = static_cast<double>(progress.done) / static_cast<double>(progress.total);
  return std::clamp(part, 0.0, 1.0);
}

std::string bar(double part, int width) {
  const auto inside = static_cast<std::size_t>(width - 2);
  const auto full = static_cast<std::size_t>(part * static_cast<double>(inside));
  std::string text(full, '=');
  if (full < inside) text += '>';
  text.resize(inside, ' ');
  return "[" + text + "]";
}

std::string speedText(const Progress& progress) {
  return progress.speed > 0 ? byteText(static_cast<std::int64_t>(progress.speed)) + "/s" : "";
}

std::string timeLeftText(const Progress& progress) {
  constexpr double kLongest = 100.0 * 60 * 60;
  const auto seconds = static_cast<double>(progress.total - progress.done) / progress.speed;
  if (progress.speed <= 0 || seconds < 0 || seconds > kLongest) return "";
  const std::chrono::seconds whole(static_cast<long>(seconds + 0.999));
  return timeText(whole) + " left";
}

std::string joined(std::initializer_list<std::string> parts) {
  std::string text;
  for (const auto& part : parts) {
    if (!part.empty()) text += (text.empty() ? "" : "  ") + part;
  }
  return text;
}

}  // namespace

std::string progressText(const Progress& progress, int width) {
  const auto columns = static_cast<std::size_t>(std::max(width, 0));
  if (progress.total < 0) {
    return joined({progress.title, byteText(progress.done), speedText(progress)})
        .substr(0, columns);
  }
  const auto part = fraction(progress);
  const auto percent = formatted("%3d%%", static_cast<int>(part * 100));
  const auto rest = joined({byteText(progress.done) + " of " + byteText(progress.total),
                            speedText(progress), timeLeftText(progress)});
  const auto bare = joined({progress.title, percent, rest});
  const int room = width - static_cast<int>(bare.size()) - 2;
  if (room < kShortestBar) return bare.substr(0, columns);
  return joined({progress.title, percent, bar(part, std::min(room, kLongestBar)), rest});
}

std::string byteText(std::int64_t bytes) {
  if (bytes < 1000) return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
  auto value = static_cast<double>(bytes);
  const char* unit = "";
  for (const char* next : {"kB", "MB", "GB", "TB"}) {
    if (value < 999.95) break;
    value /= 1000;
    unit = next;
  }
  return formatted("%.1f %s", value, unit);
}

std::string timeText(std::chrono::seconds time) {
  const auto seconds = static_cast<long>(time.count());
  const long minutes = seconds / 60;
  if (minutes < 60) return formatted("%ld:%02ld", minutes, seconds % 60);
  return formatted("%ld:%02ld:%02ld", minutes / 60, minutes % 60, seconds % 60);
}

}  // namespace tqstore
