#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include "platform/embedded/store/Ledger.hpp"
#include "platform/embedded/store/LedgerTransaction.hpp"

namespace crash {

/// A promise that the ledger has broken.
class Broken : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Throws `Broken`: "transaction NUMBER WHAT".
[[noreturn]] inline void broken(std::int64_t number, const std::string& what) {
  throw Broken("transaction " + std::to_string(number) + " " + what);
}

/// The entry as an observer would see it; throws `Broken` when it repeats one that is not there.
inline StoreKit::LedgerTransaction seen(const StoreKit::LedgerEntry& entry,
                                        const StoreKit::Ledger& ledger) {
  StoreKit::SKPaymentTransactionPtr original;
  if (entry.original) {
    const auto found = ledger.find(*entry.original);
    if (!found) broken(entry.identifier, "repeats one that is not there");
    original = std::make_shared<StoreKit::LedgerTransaction>(0, *found, nullptr);
  }
  return {0, entry, original};
}

}  // namespace crash
