#include "platform/Foundation/URLSyntax.hpp"

#include <algorithm>
#include <utility>

namespace Foundation::detail {

namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";
constexpr auto kNone = std::string_view::npos;

// By hand, since the C library's answers change with the process's locale.
bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

int hexValue(char c) {
  if (isDigit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

bool isEscape(std::string_view text) {
  return text.size() >= 3 && text[0] == '%' && hexValue(text[1]) >= 0 && hexValue(text[2]) >= 0;
}

bool isOneOf(char c, std::string_view set) { return set.find(c) != kNone; }
bool isUnreserved(char c) { return isLetter(c) || isDigit(c) || isOneOf(c, "-._~"); }

bool isScheme(std::string_view text) {
  return !text.empty() && isLetter(text[0]) && std::all_of(text.begin(), text.end(), [](char c) {
    return isLetter(c) || isDigit(c) || isOneOf(c, "+-.");
  });
}

bool hasOnlyLegalCharacters(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isLegal = text[i] == '%'
                             ? isEscape(text.substr(i))
                             : isUnreserved(text[i]) || isOneOf(text[i], ":/?#[]@!$&'()*+,;=");
    if (!isLegal) return false;
  }
  return std::count(text.begin(), text.end(), '#') <= 1;
}

std::string_view withoutUser(std::string_view authority) {
  const auto at = authority.rfind('@');
  return at == kNone ? authority : authority.substr(at + 1);
}

// The host as it is written, with its brackets, and what stands behind it: nothing, or ":" and
// the port.
std::pair<std::string_view, std::string_view> hostAndRest(std::string_view authority) {
  const auto place = withoutUser(authority);
  const auto end = place.starts_with('[') ? place.find(']') : place.find(':');
  if (end == kNone) return {place, {}};
  const auto length = place[end] == ']' ? end + 1 : end;
  return {place.substr(0, length), place.substr(length)};
}

bool isAuthority(std::string_view authority) {
  const auto [host, rest] = hostAndRest(authority);
  const bool isBracketed = host.size() > 2 && host.front() == '[' && host.back() == ']';
  if (!isBracketed && host.find_first_of("[]") != kNone) return false;
  return rest.empty() || (rest[0] == ':' && std::all_of(rest.begin() + 1, rest.end(), isDigit));
}

}  // namespace

URLParts partsOf(std::string_view url) {
  URLParts parts;
  auto rest = url;
  const auto schemeEnd = rest.find_first_of(":/?#");
  if (schemeEnd != kNone && rest[schemeEnd] == ':') {
    parts.scheme = rest.substr(0, schemeEnd);
    rest.remove_prefix(schemeEnd + 1);
  }
  if (rest.starts_with("//")) {
    rest.remove_prefix(2);
    parts.authority = rest.substr(0, rest.find_first_of("/?#"));
    rest.remove_prefix(parts.authority->size());
  }
  parts.head = url.substr(0, url.size() - rest.size());
  parts.path = rest.substr(0, rest.find_first_of("?#"));
  parts.tail = rest.substr(parts.path.size());
  return parts;
}

bool isURL(std::string_view text) {
  if (text.empty() || !hasOnlyLegalCharacters(text)) return false;
  const auto parts = partsOf(text);
  return (!parts.scheme || isScheme(*parts.scheme)) &&
         (!parts.authority || isAuthority(*parts.authority));
}

std::string hostIn(std::string_view authority) {
  auto host = hostAndRest(authority).first;
  if (host.starts_with('[')) host = host.substr(1, host.size() - 2);
  return percentDecoded(host);
}

std::string percentDecoded(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const bool escape = isEscape(text);
    result += escape ? static_cast<char>(hexValue(text[1]) * 16 + hexValue(text[2])) : text[0];
    text.remove_prefix(escape ? 3 : 1);
  }
  return result;
}

std::string percentEncodedPath(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (const char c : text) {
    if (isUnreserved(c) || isOneOf(c, "/!$&'()*+,=@")) {
      result += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      ((result += '%') += kHexDigits[byte >> 4U]) += kHexDigits[byte & 15U];
    }
  }
  return result;
}

}  // namespace Foundation::detail
