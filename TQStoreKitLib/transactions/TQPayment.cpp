#include "TQStoreKitLib/transactions/TQPayment.hpp"

namespace TQStoreKitLib {

namespace {

void combine(std::size_t& hash, std::size_t part) {
  hash ^= part + 0x9e3779b9U + (hash << 6U) + (hash >> 2U);
}

}  // namespace

std::size_t TQPayment::hashValue() const {
  std::size_t hash = product->hash();
  combine(hash, std::hash<std::int64_t>{}(quantity));
  combine(hash, std::hash<bool>{}(atomically));
  combine(hash, std::hash<std::string>{}(applicationUsername));
  combine(hash, std::hash<bool>{}(simulatesAskToBuyInSandbox));
  return hash;
}

}  // namespace TQStoreKitLib
