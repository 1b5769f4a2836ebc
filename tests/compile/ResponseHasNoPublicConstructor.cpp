#include "TQStoreKitLib/products/TQProductsResponse.hpp"

using namespace TQStoreKitLib;

TQProductsResponse use(const StoreKit::SKProductSet& products) {
#ifdef MAKE_IT_RIGHT
  return {detail::LibraryOnly{}, products, {}, std::nullopt};
#else
  return {{}, products, {}, std::nullopt};
#endif
}
