#pragma once

#include "tools/tqstore/commandline/CommandLine.hpp"

namespace tqstore {

/// `tqstore approve|decline|refund|resolve TRANSACTION`: what happens to a transaction away from
/// the application. They show what became of it, and do not observe the queue: nothing is delivered
/// here.
void addControls(CommandLine& line);

}  // namespace tqstore
