#include "TQStoreKitLib/transactions/TQPurchaseResult.hpp"

using namespace TQStoreKitLib;

void use(const TQPurchaseResult& result) {
#ifdef MAKE_IT_RIGHT
  result.match([](const TQPurchaseDetails&) {}, [](const TQSKError&) {});
#else
  result.match([](const TQPurchaseDetails&) {});
#endif
}
