#pragma once

#include <memory>

#include "platform/embedded/store/StoreSession.hpp"
#include "tools/tqstore/Console.hpp"

namespace tqstore {

/// Opens the store that the options name. Null when it cannot be opened: standard error then says
/// why, as it does of everything that is odd about the configuration.
[[nodiscard]] std::unique_ptr<StoreKit::StoreSession> openStore(const GlobalOptions& options);

/// Opens only the ledger that the options name, and no store: nothing is carried on, renewed or
/// taken over from a dead program. Null as above, and when there is none yet: none is made.
[[nodiscard]] std::unique_ptr<StoreKit::Ledger> openLedger(const GlobalOptions& options);

/// The ledger of the store that is open.
[[nodiscard]] StoreKit::Ledger& ledger();

}  // namespace tqstore
