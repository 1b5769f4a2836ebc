#pragma once

#include <optional>
#include <string>

#include "platform/embedded/store/Catalogue.hpp"
#include "platform/embedded/store/Ledger.hpp"

namespace StoreKit {

/// New entries that repeat what the user bought, finished and can have again, in the order of the
/// purchases: of each non-consumable the first purchase, of a subscription every period; nothing
/// that was refunded or is not sold any more. With a user name, what was bought with that name;
/// an absent and an empty name mean everybody's.
[[nodiscard]] LedgerEntries restorable(const Ledger& ledger, const Catalogue& catalogue,
                                       const std::optional<std::string>& applicationUsername,
                                       Foundation::Date now);

}  // namespace StoreKit
