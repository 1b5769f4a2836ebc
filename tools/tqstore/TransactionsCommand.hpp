#pragma once

#include "tools/tqstore/commandline/CommandLine.hpp"

namespace tqstore {

/// `tqstore transactions [--all]`: what the ledger holds, unfinished or all.
void addTransactions(CommandLine& line);

}  // namespace tqstore
