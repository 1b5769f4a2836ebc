#pragma once

#include "tools/tqstore/commandline/CommandLine.hpp"

namespace tqstore {

/// `tqstore storefront-buy|renew|expire PRODUCT`: what the user or the time does in the store. They
/// show the transactions that this brings or changes, and do not observe the queue.
void addStoreCommands(CommandLine& line);

}  // namespace tqstore
