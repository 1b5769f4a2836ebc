#pragma once

#include <string>

#include "platform/embedded/store/Ledger.hpp"
#include "tools/tqstore/Json.hpp"

namespace tqstore {

/// A transaction as every command shows it with --json.
[[nodiscard]] Json toJson(const StoreKit::LedgerEntry& entry, const StoreKit::Ledger& ledger);

/// "2026-11-21T07:48:10Z".
[[nodiscard]] std::string isoDate(const Foundation::Date& date);

/// The entry that `identifier` names: the ledger's own number, or the platform's identifier. Absent
/// when there is none.
[[nodiscard]] std::optional<StoreKit::LedgerEntry> findEntry(const StoreKit::Ledger& ledger,
                                                             const std::string& identifier);

}  // namespace tqstore
