#pragma once

#include <string>

namespace StoreKit {

/// The ledger file for a configuration file when nobody names one: what the environment variable
/// TQSTORE_LEDGER says, else a file of its own for each configuration in the user's state folder
/// ($XDG_STATE_HOME/tqstore, else ~/.local/state/tqstore), which is made when it is missing.
/// A variable that names no full path is as good as none; without a home the ledger is ":memory:",
/// and standard error says so.
[[nodiscard]] std::string ledgerPathFor(const std::string& configurationPath);

/// A name for what belongs to the file `path`, which no other file has: its own name without what
/// is behind the point, and a number that its whole path gives.
[[nodiscard]] std::string pathName(const std::string& path);

}  // namespace StoreKit
