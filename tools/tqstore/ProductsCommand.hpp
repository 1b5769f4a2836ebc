#pragma once

#include "tools/tqstore/commandline/CommandLine.hpp"

namespace tqstore {

/// `tqstore products [PRODUCT...]`: asks the store for products (without identifiers, for all of
/// the configuration's) and shows them in the order of the configuration.
void addProducts(CommandLine& line);

}  // namespace tqstore
