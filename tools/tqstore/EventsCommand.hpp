#pragma once

#include "tools/tqstore/commandline/CommandLine.hpp"

namespace tqstore {

/// `tqstore events`: shows every change of the ledger's transactions, by whichever program, until it
/// is interrupted. It only reads.
void addEvents(CommandLine& line);

}  // namespace tqstore
