#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/embedded/store/Ledger.hpp"

namespace StoreKit {

/// A transaction as the store's own books have it: what the platform's test session shows of one.
///
/// A record of the moment in which it was read.
struct StoreTransaction {
  std::int64_t identifier = 0;  ///< the ledger's number
  std::optional<std::int64_t> originalTransactionIdentifier{};
  std::optional<std::string> transactionIdentifier{};  ///< the platform's
  std::string productIdentifier{};
  std::int64_t quantity = 1;
  SKPaymentTransactionState state = SKPaymentTransactionState::purchasing;
  std::optional<std::string> applicationUsername{};
  std::optional<Foundation::NSError> error{};
  bool finished = false;
  std::optional<Foundation::Date> purchaseDate{};
  std::optional<Foundation::Date> cancelDate{};  ///< when it was refunded
  std::optional<Foundation::Date> expirationDate{};
  bool autoRenewingEnabled = false;
  bool hasPurchaseIssue = false;  ///< interrupted, or a renewal that could not be paid
  bool isPendingPriceIncreaseConsent = false;
  bool pendingAskToBuyConfirmation = false;

  /// What the ledger's entry says.
  [[nodiscard]] static StoreTransaction of(const LedgerEntry& entry);
};

}  // namespace StoreKit
