#pragma once

#include <optional>
#include <string>

#include "platform/embedded/sqlite/SqliteDatabase.hpp"
#include "platform/embedded/store/Ledger.hpp"

namespace StoreKit::detail {

/// The columns of an entry, in the order in which `bindEntry` and `readEntry` take them.
inline constexpr const char* kEntryColumns =
    "revision, state, finished, owner, product, quantity, request_data, username, asks_to_buy, "
    "discount, transaction_identifier, transaction_date, error, original, cancel_date, "
    "refund_revision, issue, asks_application, deleted, subscription_group, running, period, "
    "identifier";

/// Binds the columns above to the next parameters; an entry that has no number yet has NULL there.
void bindEntry(Foundation::detail::SqliteStatement& statement, const LedgerEntry& entry);

/// Reads an entry from the columns above.
[[nodiscard]] LedgerEntry readEntry(const Foundation::detail::SqliteStatement& row);

}  // namespace StoreKit::detail
