#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/embedded/store/ledger/SqliteLedger.hpp"

namespace tests {

using StoreKit::Ledger;
using StoreKit::LedgerEntries;
using StoreKit::LedgerEntry;
using StoreKit::SqliteLedger;
using State = StoreKit::SKPaymentTransactionState;

inline LedgerEntry entry(const std::string& product, State state = State::purchased) {
  LedgerEntry entry;
  entry.payment.productIdentifier = product;
  entry.state = state;
  return entry;
}

/// Opens a ledger that must not be refused.
inline std::unique_ptr<SqliteLedger> openLedger(const std::string& path) {
  auto opening = SqliteLedger::open(path);
  EXPECT_TRUE(opening.ledger) << opening.error;
  return std::move(opening.ledger);
}

inline LedgerEntries addTo(Ledger& ledger, LedgerEntries entries,
                           Ledger::Durability durability = Ledger::Durability::powerCut) {
  EXPECT_FALSE(ledger.add(entries, durability));
  return entries;
}

inline std::vector<std::string> products(const LedgerEntries& entries) {
  std::vector<std::string> names;
  for (const auto& each : entries) names.push_back(each.payment.productIdentifier);
  return names;
}

}  // namespace tests
