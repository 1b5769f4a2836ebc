#include "tools/tqstore/StorePurchases.hpp"

#include <nlohmann/json.hpp>

#include "TQStoreKitLib/TQStoreKitLib.hpp"
#include "tools/tqstore/Console.hpp"
#include "tools/tqstore/Json.hpp"

namespace tqstore {

namespace {

using TQStoreKitLib::TQStoreKit;

void show(const std::string& product, bool accepted, bool json) {
  if (json) {
    writeJson({{"event", "storePurchase"}, {"productIdentifier", product}, {"accepted", accepted}});
  } else {
    writeLine(styled("asked      ", Style::dim) + (accepted ? "accepted" : "refused") + "  " +
              printable(product) + ", begun in the store");
  }
}

}  // namespace

void answerStorePurchases(bool accept, bool json) {
  TQStoreKit::setShouldAddStorePaymentHandler(
      [=](const StoreKit::SKPaymentPtr& payment, const StoreKit::SKProductPtr&) {
        show(payment->productIdentifier(), accept, json);
        return accept;
      });
}

}  // namespace tqstore
