#include "tools/tqstore/PurchaseResult.hpp"

#include <nlohmann/json.hpp>
#include <string>

#include "tools/tqstore/StoreOpening.hpp"

namespace tqstore {

namespace {

using TQStoreKitLib::TQPurchaseDetails;
using TQStoreKitLib::TQSKError;

void writeResult(const char* result, Style style, const std::string& text) {
  writeLine(styled("result  ", Style::dim) + styled(result, style) + "  " + text);
}

void writeSuccess(const TQPurchaseDetails& details, const StoreKit::LedgerEntry& entry, bool json) {
  const auto& identifier = entry.transactionIdentifier;
  if (json) {
    return writeJson({{"result", "success"},
                      {"productIdentifier", details.productId},
                      {"quantity", details.quantity},
                      {"identifier", std::to_string(entry.identifier)},
                      {"transactionIdentifier", identifier ? Json(*identifier) : Json(nullptr)},
                      {"needsFinishTransaction", !entry.finished}});
  }
  writeResult("bought", Style::green,
              std::to_string(details.quantity) + " x " + printable(details.productId) +
                  ", transaction " + identifier.value_or("without identifier") +
                  (entry.finished ? ", finished" : ", still to be finished"));
}

}  // namespace

ExitStatus showSuccess(const TQPurchaseDetails& details, bool json) {
  const auto seen = entryOf(*details.transaction);
  if (!seen) return kRefused;  // no transaction of the embedded store
  const auto entry = latest(*seen, ledger());
  writeSuccess(details, entry, json);
  if (entry.finished || details.needsFinishTransaction) return kDone;
  complain("the finish of transaction " + std::to_string(entry.identifier) +
           " could not be written down: it is still to be finished");
  return kRefused;
}

ExitStatus showError(const TQSKError& error, bool json) {
  if (json) {
    writeJson({{"result", "error"}, {"message", error.msg()}});
  } else {
    writeResult("error", Style::red, printable(error.msg()));
  }
  return kRefused;
}

ExitStatus showDeferred(const StoreKit::LedgerEntry& entry, bool json) {
  const auto& payment = entry.payment;
  const auto number = std::to_string(entry.identifier);
  if (json) {
    writeJson({{"result", "deferred"},
               {"productIdentifier", payment.productIdentifier},
               {"quantity", payment.quantity},
               {"identifier", number},
               {"transactionIdentifier", nullptr}});
  } else {
    writeResult("deferred", Style::bold,
                std::to_string(payment.quantity) + " x " + printable(payment.productIdentifier) +
                    ", to be approved or declined as transaction " + number);
  }
  return kDone;
}

}  // namespace tqstore
