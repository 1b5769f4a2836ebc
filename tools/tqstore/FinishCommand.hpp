#pragma once

#include "tools/tqstore/commandline/CommandLine.hpp"

namespace tqstore {

/// `tqstore finish TRANSACTION|--all`: takes a transaction, or every one that can be, out of the
/// queue.
void addFinish(CommandLine& line);

}  // namespace tqstore
