#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/embedded/store/StoreSession.hpp"
#include "tools/tqstore/Console.hpp"

namespace tqstore {

struct BuyOptions {
  std::string productIdentifier;
  std::int64_t quantity = 1;
  std::string user;
  bool finish = true;
  std::optional<int> failWith;
  bool cancel = false;
};

/// `tqstore buy ID`: buys through the library and shows, in the order in which they happen, the
/// store events and the result.
[[nodiscard]] ExitStatus buy(StoreKit::StoreSession& session, const GlobalOptions& options,
                             const BuyOptions& purchase);

}  // namespace tqstore
