#pragma once

#include <optional>

#include "platform/Foundation/Locale.hpp"

namespace Foundation {

/// The user's locale that the embedded platform says it has. Absent, as at the start: the one that
/// the environment names (LC_ALL, LC_MESSAGES, LANG), or "en_US" when it names none.
///
/// Thread: any.
void setCurrentLocale(std::optional<Locale> locale);

/// The system version that the embedded platform claims to be. It is newer than everything that the
/// library asks for, until a program lowers it to see what an older system does.
///
/// Thread: any.
void setOperatingSystemVersion(int major, int minor);

}  // namespace Foundation
