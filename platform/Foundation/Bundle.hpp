#pragma once

#include <string>
#include <string_view>

namespace Foundation {

/// Looks `key` up in the default strings table of the application's main bundle: the translation
/// into the user's language, or `key` itself when there is none.
///
/// Nothing is cached: a table that changes shows at the next call.
/// Thread: any.
[[nodiscard]] std::string localizedString(std::string_view key);

}  // namespace Foundation
