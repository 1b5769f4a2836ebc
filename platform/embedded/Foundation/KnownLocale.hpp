#pragma once

#include <unicode/locid.h>

#include "platform/Foundation/Locale.hpp"

namespace Foundation {

/// ICU's locale for ours; the neutral one where ICU has no data for the language. Left alone, ICU
/// would take the process's own locale there.
[[nodiscard]] icu::Locale knownLocale(const Locale& locale);

}  // namespace Foundation
