#pragma once

#include "tools/tqstore/commandline/CommandLine.hpp"

namespace tqstore {

/// `tqstore settings [KEY [VALUE]] [--reset]`: shows how the store behaves, and changes it for every
/// program on the ledger.
void addSettings(CommandLine& line);

}  // namespace tqstore
