#pragma once

#include <string>

namespace StoreKit {

/// The ledger file for a configuration file when nobody names one: what the environment variable
/// TQSTORE_LEDGER says, else a file of its own for each configuration in the user's state folder
/// ($XDG_STATE_HOME/tqstore, else ~/.local/state/tqstore), which is made when it is missing.
/// Without a home it is ":memory:".
[[nodiscard]] std::string ledgerPathFor(const std::string& configurationPath);

}  // namespace StoreKit
