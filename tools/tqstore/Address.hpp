#pragma once

#include <optional>
#include <string>

#include "platform/Foundation/URL.hpp"

namespace tqstore {

/// The address in an argument of the command line; says why when it is none that can be loaded.
[[nodiscard]] std::optional<Foundation::URL> addressFrom(const std::string& text);

}  // namespace tqstore
