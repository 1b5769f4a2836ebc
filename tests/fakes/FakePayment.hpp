#pragma once

#include <string>
#include <utility>

#include "TQStoreKitLib/transactions/TQPayment.hpp"
#include "tests/fakes/FakeProduct.hpp"

namespace TQStoreKitLib::tests {

inline TQPayment aPayment(const std::string& productIdentifier, TQPayment::Callback callback = {}) {
  return {.product = aProduct(productIdentifier), .callback = std::move(callback)};
}

/// One whose transaction is left for the application to finish.
inline TQPayment anUnatomicPayment(const std::string& productIdentifier,
                                   TQPayment::Callback callback = {}) {
  auto payment = aPayment(productIdentifier, std::move(callback));
  payment.atomically = false;
  return payment;
}

}  // namespace TQStoreKitLib::tests
