#include "platform/Foundation/NumberText.hpp"

#include <clocale>
#include <cstdlib>

#ifdef __APPLE__
#include <xlocale.h>
#endif

#include <array>
#include <charconv>

namespace Foundation {

namespace {

// The C locale as an object, so that the process's own locale is left alone.
locale_t plainLocale() {
  static const locale_t instance = ::newlocale(LC_ALL_MASK, "C", nullptr);
  return instance;
}

// Blanks in front are no obstacle to strtod, which is why they are looked for.
bool startsLikeANumber(const std::string& text) {
  constexpr std::string_view kBlanks = " \t\n\v\f\r";
  return !text.empty() && kBlanks.find(text.front()) == std::string_view::npos;
}

}  // namespace

std::optional<double> doubleFromText(std::string_view text) {
  const std::string terminated(text);
  if (!startsLikeANumber(terminated)) return std::nullopt;
  char* end = nullptr;
  const double number = ::strtod_l(terminated.c_str(), &end, plainLocale());
  if (end != terminated.data() + terminated.size()) return std::nullopt;
  return number;
}

std::string textFromDouble(double number) {
  std::array<char, 32> text{};
  const auto result = std::to_chars(text.data(), text.data() + text.size(), number);
  return {text.data(), result.ptr};
}

}  // namespace Foundation
