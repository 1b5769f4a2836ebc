#pragma once

#include <string>

#include "platform/embedded/store/StoreSession.hpp"
#include "tools/tqstore/Console.hpp"

namespace tqstore {

/// `tqstore transactions`: what the ledger holds, unfinished or all. Starts nothing.
[[nodiscard]] ExitStatus showTransactions(const GlobalOptions& options, bool all);

/// `tqstore finish`: takes a transaction, or every one that can be, out of the queue.
[[nodiscard]] ExitStatus finish(const GlobalOptions& options, const std::string& identifier,
                                bool all);

/// `tqstore launch`: starts as an application does, and shows what the launch-time completion is
/// given until the queue is quiet; with `watch`, until the program is ended.
[[nodiscard]] ExitStatus launch(const GlobalOptions& options, bool finishes, bool watch);

/// `tqstore restore`: brings back what was bought and can be had again.
[[nodiscard]] ExitStatus restore(const GlobalOptions& options, const std::string& user,
                                 bool finishes);

}  // namespace tqstore
