#pragma once

#include <optional>
#include <string>

#include "TQStoreKitLib/transactions/TQPaymentTransaction.hpp"
#include "platform/embedded/store/Ledger.hpp"
#include "tools/tqstore/Json.hpp"

namespace tqstore {

/// A transaction as every command shows it with --json.
[[nodiscard]] Json toJson(const StoreKit::LedgerEntry& entry, const StoreKit::Ledger& ledger);

/// What a person reads of its state: "purchased", "failed, finished", "purchased, refunded".
[[nodiscard]] std::string stateText(const StoreKit::LedgerEntry& entry);

/// What a person reads of the subscription that a transaction keeps running: "until
/// 2026-11-21T07:48:10Z, renews"; empty for every other.
[[nodiscard]] std::string periodText(const StoreKit::LedgerEntry& entry);

/// The same transaction as `ledger` has it now; as it was, when it is not there any more.
[[nodiscard]] StoreKit::LedgerEntry latest(const StoreKit::LedgerEntry& entry,
                                           const StoreKit::Ledger& ledger);

/// "2026-11-21T07:48:10Z".
[[nodiscard]] std::string isoDate(const Foundation::Date& date);

/// The entry that `identifier` names: the ledger's own number, or else the platform's identifier.
/// Absent when there is none. Reads more than the entry itself only for an identifier that the
/// store of this program would not have given.
[[nodiscard]] std::optional<StoreKit::LedgerEntry> findEntry(const StoreKit::Ledger& ledger,
                                                             const std::string& identifier);

/// The ledger's entry behind a transaction of the platform or of the library; absent for one that
/// is not of the embedded store.
[[nodiscard]] std::optional<StoreKit::LedgerEntry> entryOf(
    const StoreKit::SKPaymentTransactionPtr& transaction);
[[nodiscard]] std::optional<StoreKit::LedgerEntry> entryOf(
    const TQStoreKitLib::TQPaymentTransaction& transaction);

}  // namespace tqstore
