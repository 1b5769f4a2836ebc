#include "tools/tqstore/Console.hpp"

#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>

namespace tqstore {

namespace {

void write(std::FILE* file, std::string_view line) {
  std::fwrite(line.data(), 1, line.size(), file);
  std::fputc('\n', file);
  std::fflush(file);
}

bool hasColour() {
  static const bool answer = isatty(STDOUT_FILENO) != 0 && std::getenv("NO_COLOR") == nullptr;
  return answer;
}

const char* escape(Style style) {
  switch (style) {
    case Style::bold:
      return "\033[1m";
    case Style::green:
      return "\033[32m";
    case Style::red:
      return "\033[31m";
    case Style::dim:
      return "\033[2m";
  }
  return "";
}

}  // namespace

void writeLine(std::string_view line) { write(stdout, line); }

void complain(std::string_view message) { write(stderr, "tqstore: " + std::string(message)); }

std::string styled(std::string_view text, Style style) {
  if (!hasColour()) return std::string(text);
  return escape(style) + std::string(text) + "\033[0m";
}

int terminalWidth(int fallback) {
  winsize size{};
  if (isatty(STDOUT_FILENO) == 0 || ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) return fallback;
  return size.ws_col > 0 ? size.ws_col : fallback;
}

std::string counted(std::size_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string printable(std::string_view text) {
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte != 0x7f) {
      result += c;
      continue;
    }
    std::array<char, 8> shown{};
    std::snprintf(shown.data(), shown.size(), "\\x%02x", byte);
    result += shown.data();
  }
  return result;
}

}  // namespace tqstore
