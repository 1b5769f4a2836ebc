#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/embedded/store/StoreSession.hpp"
#include "tools/tqstore/Console.hpp"

namespace tqstore {

/// Opens the store that the options name. Null when it cannot be opened: standard error then says
/// why, as it does of everything that is odd about the configuration.
[[nodiscard]] std::unique_ptr<StoreKit::StoreSession> openStore(const GlobalOptions& options);

/// Where the ledger is, or will be, that the options name: without --ledger, that of the
/// configuration. Absent when it cannot be said or is in memory: standard error then says why.
[[nodiscard]] std::optional<std::string> ledgerFile(const GlobalOptions& options);

/// False when nothing is there, or an empty file, of which a ledger can still be made.
[[nodiscard]] bool hasLedger(const std::string& path);

/// Opens only a ledger, and no store: nothing is carried on, renewed or taken over from a dead
/// program. Null as above.
[[nodiscard]] std::unique_ptr<StoreKit::Ledger> openLedger(const std::string& path);

/// The ledger of the store that is open.
[[nodiscard]] StoreKit::Ledger& ledger();

}  // namespace tqstore
