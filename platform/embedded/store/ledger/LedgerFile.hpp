#pragma once

#include <memory>
#include <string>

#include "platform/embedded/sqlite/SqliteDatabase.hpp"

namespace StoreKit::detail {

/// Opens the ledger file `path`, which is made when it is missing or empty.
///
/// A file that is not a ledger, one of a newer version, and one that was cut short are refused, and
/// not written to: what they are is read from their first bytes, before SQLite touches them. Throws
/// `SqliteError`, whose text names the file and the reason. ":memory:" is a ledger without a file.
[[nodiscard]] std::unique_ptr<Foundation::detail::SqliteDatabase> openLedgerFile(
    const std::string& path);

/// "TQSL": the application id in the header of each ledger.
inline constexpr int kLedgerApplicationId = 0x5451534C;
/// The version of the tables. A ledger of an earlier one is upgraded in place, a later one refused.
inline constexpr int kLedgerVersion = 3;

}  // namespace StoreKit::detail
