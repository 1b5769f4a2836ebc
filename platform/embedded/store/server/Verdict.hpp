#pragma once

#include <cstdint>
#include <optional>

#include "platform/Foundation/NSError.hpp"
#include "platform/StoreKit/SKPayment.hpp"
#include "platform/embedded/store/Catalogue.hpp"
#include "platform/embedded/store/Ledger.hpp"
#include "platform/embedded/store/SimulatedErrors.hpp"

namespace StoreKit {

/// What the store makes of a payment.
struct Verdict {
  std::optional<Foundation::NSError> error{};  ///< it fails
  bool interrupted = false;                    ///< it fails, and can be resolved later
  bool deferred = false;                       ///< somebody else has to approve it
};

/// Judges a payment. In this order: an error that was ordered for it; payments are not allowed
/// (error 4); an unknown product, or a quantity that is not sold at once (3); a promotional offer
/// that cannot be had (11 to 14, 18); every transaction fails, by the settings; it is interrupted
/// (0); it has to be approved.
[[nodiscard]] Verdict judge(const SKPayment::Values& payment, const Catalogue& catalogue,
                            const StoreConfiguration::Settings& settings, const Ledger& ledger,
                            SimulatedErrors& ordered, Foundation::Date now);

/// The same, of a payment that the user has confirmed before: whether it can be sold at all.
[[nodiscard]] std::optional<Foundation::NSError> objection(const SKPayment::Values& payment,
                                                           const Catalogue& catalogue);

/// The most pieces that the store sells at once; the platform's own limit.
inline constexpr std::int64_t kLargestQuantity = 10;

}  // namespace StoreKit
