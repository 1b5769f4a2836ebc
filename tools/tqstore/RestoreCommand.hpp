#pragma once

#include "tools/tqstore/commandline/CommandLine.hpp"

namespace tqstore {

/// `tqstore restore`: brings back what was bought and can be had again.
void addRestore(CommandLine& line);

}  // namespace tqstore
