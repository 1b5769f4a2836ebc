#pragma once

#include "tools/tqstore/commandline/CommandLine.hpp"

namespace tqstore {

/// `tqstore check FILE...`: says everything that is odd about configurations, and what the store
/// makes of them.
void addCheck(CommandLine& line);

}  // namespace tqstore
