#pragma once

#include <optional>
#include <string>

namespace Foundation {

/// The folder in which the embedded platform keeps the user defaults: one SQLite file for each
/// store, "NAME.defaults"; the standard store has the name of the program. Absent, as at the start:
/// the folder that the environment names with TQSTORE_DEFAULTS, else TQStoreKitLib in the user's
/// configuration folder (XDG_CONFIG_HOME, or .config in HOME).
///
/// To be set before a store is asked for: one that exists stays where it is.
/// Thread: any.
void setDefaultsFolder(std::optional<std::string> path);

/// Where it is now; absent when nothing names a folder.
[[nodiscard]] std::optional<std::string> defaultsFolder();

/// The name of the standard store: the program's, without its folder.
[[nodiscard]] std::string programName();

}  // namespace Foundation
