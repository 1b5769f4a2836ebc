#pragma once

#include <string>
#include <vector>

#include "platform/embedded/store/StoreSession.hpp"
#include "tools/tqstore/Console.hpp"

namespace tqstore {

/// `tqstore products [ID...]`: asks the store for the products (without identifiers, for all of the
/// configuration's) and shows them in the order of the configuration.
[[nodiscard]] ExitStatus showProducts(const StoreKit::StoreSession& session,
                                      const GlobalOptions& options,
                                      const std::vector<std::string>& identifiers);

}  // namespace tqstore
