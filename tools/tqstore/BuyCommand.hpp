#pragma once

#include "tools/tqstore/commandline/CommandLine.hpp"

namespace tqstore {

/// `tqstore buy PRODUCT`: buys through the library and shows, in the order in which they happen, the
/// store events and the result.
void addBuy(CommandLine& line);

}  // namespace tqstore
