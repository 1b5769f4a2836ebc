#pragma once

#include "tools/tqstore/commandline/CommandLine.hpp"

namespace tqstore {

/// `tqstore reset`: empties the ledger, transactions and settings.
void addReset(CommandLine& line);

}  // namespace tqstore
