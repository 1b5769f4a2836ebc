#pragma once

#include <string>
#include <string_view>

/// What the ledger's database is asked to do with entries. Their columns are the parameters that
/// `bindEntry` binds, by their numbers.
namespace StoreKit::detail {

/// Adds an entry.
[[nodiscard]] const std::string& insertion();

/// Writes an entry over the one that has its number. An index is written, however little of it has
/// changed, when a column that it looks at is set: most of them look at `finished` alone, which is
/// only set when that `finishes`.
[[nodiscard]] const std::string& replacement(bool finishes);

/// Reads the entries that a condition names; it is what follows the table in a query.
[[nodiscard]] std::string selection(std::string_view condition);

}  // namespace StoreKit::detail
