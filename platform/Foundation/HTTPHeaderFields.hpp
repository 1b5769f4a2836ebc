#pragma once

#include <map>
#include <string>
#include <string_view>

namespace Foundation {

/// Orders names of header fields; ASCII letters of either case are the same.
struct HTTPHeaderNameLess {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const;
};

/// The fields of a request or a response: one value for each name, found in any letter case.
using HTTPHeaderFields = std::map<std::string, std::string, HTTPHeaderNameLess>;

}  // namespace Foundation
