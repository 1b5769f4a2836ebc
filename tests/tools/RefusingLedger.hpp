#pragma once

#include <string>

namespace tests {

/// Lets the ledger in the file `path` refuse, from now on, every change after which `condition` is
/// true of a transaction: SQL on `new`, such as "new.finished = 1". No program may have it open.
void refuseChanges(const std::string& path, const std::string& condition);

/// Changes the ledger in a file, by SQL.
void changeLedger(const std::string& path, const std::string& statements);

}  // namespace tests
