#pragma once

#include <string>
#include <string_view>

/// What the ledger's database is asked to do with entries. Their columns are the parameters that
/// `bindEntry` binds, by their numbers.
namespace StoreKit::detail {

/// Adds an entry.
[[nodiscard]] const std::string& insertion();

/// Writes an entry over the one that has its number, if that has the revision that is bound last.
/// An index is written, however little of it has changed, when a column that it looks at is set: one
/// looks at `finished`, which is only set when the entry `moves` between the finished ones and the
/// others; one that does not move is only written over an unfinished one.
[[nodiscard]] const std::string& replacement(bool moves);

/// Reads the entries that a condition names; it is what follows the table in a query.
[[nodiscard]] std::string selection(std::string_view condition);

}  // namespace StoreKit::detail
