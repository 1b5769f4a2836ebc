#include "platform/apple/Foundation/JSONScanner.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "platform/Foundation/NumberText.hpp"
#include "platform/Foundation/UnicodeText.hpp"
#include "platform/apple/Foundation/UTF16.hpp"

namespace Foundation {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isBlank(char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; }

template <class Integer>
bool readInteger(std::string_view digits, JSONNumber& number) {
  Integer value = 0;
  const auto* const end = digits.data() + digits.size();
  const auto result = std::from_chars(digits.data(), end, value);
  if (result.ec != std::errc() || result.ptr != end) return false;
  number = value;
  return true;
}

bool readNumber(std::string_view text, JSONNumber& number) {
  if (readInteger<std::int64_t>(text, number) || readInteger<std::uint64_t>(text, number)) {
    return true;
  }
  const auto value = doubleFromText(text);
  if (!value || !std::isfinite(*value)) return false;
  number = *value;
  return true;
}

// What a backslash and this character stand for; NUL for nothing.
char escaped(char c) {
  constexpr std::string_view kLetters = "\"\\/bfnrt";
  constexpr std::string_view kMeanings = "\"\\/\b\f\n\r\t";
  const auto at = kLetters.find(c);
  return at == std::string_view::npos ? '\0' : kMeanings[at];
}

}  // namespace

JSONScanner::JSONScanner(std::string_view text) : text_(text) {
  if (!isUTF8(text_)) fail("the text is not UTF-8");
}

char JSONScanner::next() {
  if (!problem_.empty()) return '\0';
  while (isBlank(text_[at_])) ++at_;
  return text_[at_];
}

bool JSONScanner::isAtEnd() { return next() == '\0' && at_ == text_.size(); }

bool JSONScanner::take(char mark) {
  if (next() != mark || at_ == text_.size()) return false;
  ++at_;
  return true;
}

bool JSONScanner::takeWord(std::string_view word) {
  (void)next();
  if (!problem_.empty() || text_.compare(at_, word.size(), word) != 0) {
    return fail("this is no value");
  }
  at_ += word.size();
  return true;
}

bool JSONScanner::takeDigits() {
  const auto begin = at_;
  while (isDigit(text_[at_])) ++at_;
  return at_ > begin;
}

bool JSONScanner::takeNumber(JSONNumber& number) {
  (void)next();
  if (!problem_.empty()) return false;
  const auto begin = at_;
  if (text_[at_] == '-') ++at_;
  const bool startsWithZero = text_[at_] == '0';
  const auto firstDigit = at_;
  if (!takeDigits()) return fail("this is no number");
  if (startsWithZero && at_ > firstDigit + 1) return fail("a number starts with a zero too many");
  if (text_[at_] == '.') {
    ++at_;
    if (!takeDigits()) return fail("a number ends with its point");
  }
  if (text_[at_] == 'e' || text_[at_] == 'E') {
    ++at_;
    if (text_[at_] == '+' || text_[at_] == '-') ++at_;
    if (!takeDigits()) return fail("a number ends before its exponent");
  }
  if (readNumber(std::string_view(text_).substr(begin, at_ - begin), number)) return true;
  return fail("a number is too large");
}

// The text is written over itself: what it says is never longer than how it is written.
bool JSONScanner::takeText(std::string_view& text) {
  if (!take('"')) return fail("a text should stand here");
  char* const begin = text_.data() + at_;
  char* out = begin;
  while (at_ < text_.size() && text_[at_] != '"') {
    const char c = text_[at_++];
    if (static_cast<unsigned char>(c) < 0x20) return fail("a text has a control character in it");
    if (c != '\\') {
      *out++ = c;
    } else if (!takeEscape(out)) {
      return false;
    }
  }
  text = {begin, static_cast<std::size_t>(out - begin)};
  return take('"') || fail("a text has no end");
}

bool JSONScanner::takeEscape(char*& out) {
  if (text_[at_] != 'u') {
    const char meaning = escaped(text_[at_]);
    if (meaning == '\0') return fail("no such escape");
    ++at_;
    *out++ = meaning;
    return true;
  }
  std::u16string units;
  if (!takeCodeUnits(units)) return false;
  const auto bytes = utf8FromUTF16(units);
  out = std::copy(bytes.begin(), bytes.end(), out);
  return true;
}

// One escaped unit, or the two of a character beyond the first 65,536.
bool JSONScanner::takeCodeUnits(std::u16string& units) {
  units = u" ";
  if (!takeCodeUnit(units[0])) return false;
  if (isHighSurrogate(units[0]) && text_[at_] == '\\') {
    ++at_;
    units += u' ';
    if (!takeCodeUnit(units[1])) return false;
    if (isLowSurrogate(units[1])) return true;
  }
  if (!isHighSurrogate(units[0]) && !isLowSurrogate(units[0])) return true;
  return fail("half a character is escaped");
}

// "u" and four hexadecimal digits.
bool JSONScanner::takeCodeUnit(char16_t& unit) {
  constexpr std::size_t kDigits = 4;
  const char* const begin = text_.data() + at_ + 1;
  if (text_[at_] != 'u' || text_.size() - at_ <= kDigits) return fail("an escape is cut off");
  std::uint16_t value = 0;
  const auto result = std::from_chars(begin, begin + kDigits, value, 16);
  if (result.ptr != begin + kDigits) return fail("an escape has digits that are none");
  unit = static_cast<char16_t>(value);
  at_ += 1 + kDigits;
  return true;
}

bool JSONScanner::fail(std::string_view message) {
  return stop("not JSON: " + std::string(message) + " (at byte " + std::to_string(at_) + ")");
}

bool JSONScanner::stop(std::string problem) {
  if (problem_.empty()) problem_ = std::move(problem);
  return false;
}

}  // namespace Foundation
