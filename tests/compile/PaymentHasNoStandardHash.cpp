#include <functional>

#include "TQStoreKitLib/transactions/TQPayment.hpp"

std::size_t use(const TQStoreKitLib::TQPayment& payment) {
#ifdef MAKE_IT_RIGHT
  return payment.hashValue();
#else
  return std::hash<TQStoreKitLib::TQPayment>{}(payment);
#endif
}
