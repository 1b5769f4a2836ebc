#include "TQStoreKitLib/transactions/TQTransactionResult.hpp"

using namespace TQStoreKitLib;

void use(const TQTransactionResult& result) {
#ifdef MAKE_IT_RIGHT
  result.match([](const TQPurchaseDetails&) {}, [](const TQPurchase&) {},
               [](const TQTransactionResult::Failed&) {});
#else
  result.match([](const TQPurchaseDetails&) {}, [](const TQTransactionResult::Failed&) {});
#endif
}
