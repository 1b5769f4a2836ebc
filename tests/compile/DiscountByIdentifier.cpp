#include "TQStoreKitLib/transactions/TQStoreKit.hpp"

using namespace TQStoreKitLib;

#ifdef MAKE_IT_RIGHT
using Options = TQProductPurchaseOptions;
#else
using Options = TQIdentifierPurchaseOptions;
#endif

Options use(const TQPaymentDiscount& discount) {
  return {.quantity = 2, .paymentDiscount = discount};
}
