#include "tools/tqstore/Console.hpp"

#include <sys/ioctl.h>
#include <unistd.h>

#include <unicode/utf8.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace tqstore {

namespace {

void write(std::FILE* file, std::string_view line) {
  std::fwrite(line.data(), 1, line.size(), file);
  std::fputc('\n', file);
  std::fflush(file);
}

// Of the bytes of one character, or of one that is none.
std::string escaped(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    std::array<char, 8> shown{};
    std::snprintf(shown.data(), shown.size(), "\\x%02x", static_cast<unsigned char>(byte));
    text += shown.data();
  }
  return text;
}

// U+0080 to U+009F drive a terminal as the controls below the space do.
bool isShown(UChar32 character) {
  return character >= 0x20 && character != 0x7f && (character < 0x80 || character > 0x9f);
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

void writeLine(std::string_view line) {
  const bool wasLost = outputIsLost();
  write(stdout, line);
  if (wasLost || !outputIsLost()) return;
  complain("standard output cannot be written to: " + std::string(std::strerror(errno)));
}

bool outputIsLost() { return std::ferror(stdout) != 0; }

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
  const auto length = static_cast<std::int32_t>(text.size());
  for (std::int32_t at = 0; at < length;) {
    const auto start = static_cast<std::size_t>(at);
    UChar32 character = 0;
    U8_NEXT(text.data(), at, length, character);  // NOLINT(bugprone-inc-dec-in-conditions): ICU's
    const auto bytes = text.substr(start, static_cast<std::size_t>(at) - start);
    result += isShown(character) ? std::string(bytes) : escaped(bytes);
  }
  return result;
}

}  // namespace tqstore
