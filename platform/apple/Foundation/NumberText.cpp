#include "platform/Foundation/NumberText.hpp"

#ifdef __APPLE__
#include <xlocale.h>
#endif

#include <algorithm>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <iomanip>
#include <limits>
#include <locale>
#include <sstream>
#include <utility>

namespace Foundation {

namespace {

constexpr int kMostDigits = std::numeric_limits<double>::max_digits10;

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

template <class Notation>
std::string written(double number, Notation notation, int decimals) {
  std::ostringstream out;
  out.imbue(std::locale::classic());
  out << notation << std::setprecision(decimals) << number;
  return out.str();
}

// Without the zeros at the end of its decimals, if it has any.
std::string trimmed(std::string scientific) {
  if (scientific.find('.') == std::string::npos) return scientific;
  const auto end = scientific.find('e');
  const auto lastDigit = scientific.find_last_not_of('0', end - 1);
  const auto keep = scientific[lastDigit] == '.' ? lastDigit : lastDigit + 1;
  return scientific.erase(keep, end - keep);
}

// The next number of as many digits, away from zero, as long as the last digit is not a nine.
std::string raised(std::string scientific) {
  auto& lastDigit = scientific[scientific.find('e') - 1];
  if (lastDigit != '9') ++lastDigit;
  return scientific;
}

// "d.ddde+xx" with as few digits as read back as the same number. Any number of 15 digits survives
// the way through a double, other than the smallest. Numbers reach further up than down where the
// exponent changes: there the nearest text may be beyond them, and the one above not.
std::string shortestScientific(double number) {
  constexpr int kSafeDigits = std::numeric_limits<double>::digits10;
  const bool isTiny = std::fabs(number) < std::numeric_limits<double>::min();
  for (int digits = isTiny ? 1 : kSafeDigits; digits < kMostDigits; ++digits) {
    auto text = written(number, std::scientific, digits - 1);
    if (doubleFromText(text) == number) return trimmed(std::move(text));
    text = raised(std::move(text));
    if (doubleFromText(text) == number) return text;
  }
  return written(number, std::scientific, kMostDigits - 1);
}

int exponentIn(const std::string& scientific) {
  return std::stoi(scientific.substr(scientific.find('e') + 1));
}

// The number without an exponent; as many decimals as the digits of `scientific` need.
std::string plain(double number, const std::string& scientific) {
  const auto mark = scientific.find('.');
  const auto end = scientific.find('e');
  const int digitsBehindMark = mark == std::string::npos ? 0 : static_cast<int>(end - mark) - 1;
  return written(number, std::fixed, std::max(0, digitsBehindMark - exponentIn(scientific)));
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
  if (std::isnan(number)) return "nan";
  if (std::isinf(number)) return number < 0 ? "-inf" : "inf";
  const auto scientific = shortestScientific(number);
  auto text = plain(number, scientific);
  return text.size() <= scientific.size() ? text : scientific;
}

}  // namespace Foundation
