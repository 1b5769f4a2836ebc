#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Foundation/StringEncoding.hpp"

namespace Foundation {

/// True for UTF-8, UTF-16 and UTF-32, in whatever byte order.
[[nodiscard]] bool isUnicodeEncoding(NSStringEncoding encoding);

/// `decodeText` for these encodings, which the platform itself reads with more patience. A byte
/// order mark at the front is taken away, unless the encoding already says the order.
[[nodiscard]] std::optional<std::string> decodeUnicode(std::string_view bytes,
                                                       NSStringEncoding encoding);

}  // namespace Foundation
