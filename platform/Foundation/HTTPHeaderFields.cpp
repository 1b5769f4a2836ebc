#include "platform/Foundation/HTTPHeaderFields.hpp"

#include <algorithm>

namespace Foundation {

namespace {

unsigned char folded(char c) {
  const bool isUpper = c >= 'A' && c <= 'Z';
  return static_cast<unsigned char>(isUpper ? c - 'A' + 'a' : c);
}

}  // namespace

bool HTTPHeaderNameLess::operator()(std::string_view a, std::string_view b) const {
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                      [](char x, char y) { return folded(x) < folded(y); });
}

}  // namespace Foundation
