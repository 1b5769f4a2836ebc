#include "tools/tqstore/RevocationWatch.hpp"

#include <nlohmann/json.hpp>

#include "platform/StoreKit/SKPaymentQueue.hpp"
#include "tools/tqstore/Console.hpp"
#include "tools/tqstore/Json.hpp"

namespace tqstore {

RevocationWatch::RevocationWatch(bool json) : json_(json) {
  StoreKit::SKPaymentQueue::defaultQueue().addTransactionObserver(*this);
}

RevocationWatch::~RevocationWatch() {
  StoreKit::SKPaymentQueue::defaultQueue().removeTransactionObserver(*this);
}

void RevocationWatch::paymentQueueDidRevokeEntitlements(
    const std::vector<std::string>& productIdentifiers) {
  for (const auto& product : productIdentifiers) {
    if (json_) {
      writeJson({{"event", "revoked"}, {"productIdentifier", product}});
    } else {
      writeLine(styled("revoked    ", Style::red) + printable(product));
    }
  }
}

}  // namespace tqstore
