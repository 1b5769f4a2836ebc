#include "platform/embedded/store/LedgerTransaction.hpp"

#include <functional>
#include <utility>

namespace StoreKit {

LedgerTransaction::LedgerTransaction(std::uint64_t ledger, LedgerEntry entry,
                                     SKPaymentTransactionPtr original)
    : ledger_(ledger),
      entry_(std::move(entry)),
      payment_(std::make_shared<const SKPayment>(entry_.payment)),
      original_(std::move(original)) {}

SKPaymentTransactionState LedgerTransaction::transactionState() const { return entry_.state; }

std::optional<std::string> LedgerTransaction::transactionIdentifier() const {
  return entry_.transactionIdentifier;
}

std::optional<Foundation::Date> LedgerTransaction::transactionDate() const {
  return entry_.transactionDate;
}

std::optional<Foundation::NSError> LedgerTransaction::error() const { return entry_.error; }

bool LedgerTransaction::isEqual(const SKPaymentTransaction& other) const {
  const auto* transaction = dynamic_cast<const LedgerTransaction*>(&other);
  return transaction && transaction->ledger_ == ledger_ &&
         transaction->entry_.identifier == entry_.identifier;
}

std::size_t LedgerTransaction::hash() const { return std::hash<std::int64_t>{}(entry_.identifier); }

}  // namespace StoreKit
