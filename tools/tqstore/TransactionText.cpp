#include "tools/tqstore/TransactionText.hpp"

#include "TQStoreKitLib/transactions/TransactionDescriptions.hpp"

namespace tqstore {

namespace {

Json orNull(const std::optional<std::string>& text) { return text ? Json(*text) : Json(nullptr); }

Json errorJson(const std::optional<Foundation::NSError>& error) {
  if (!error) return nullptr;
  return {{"domain", error->domain()},
          {"code", error->code()},
          {"message", error->localizedDescription()}};
}

Json originalJson(const StoreKit::LedgerEntry& entry, const StoreKit::Ledger& ledger) {
  if (!entry.original) return nullptr;
  const auto original = ledger.find(*entry.original);
  return original ? orNull(original->transactionIdentifier) : Json(nullptr);
}

}  // namespace

std::string isoDate(const Foundation::Date& date) {
  auto text = date.description().substr(0, 19);  // without the zone, which is always UTC
  if (text.size() == 19) text[10] = 'T';
  return text + "Z";
}

Json toJson(const StoreKit::LedgerEntry& entry, const StoreKit::Ledger& ledger) {
  const auto& date = entry.transactionDate;
  return {{"identifier", std::to_string(entry.identifier)},
          {"transactionIdentifier", orNull(entry.transactionIdentifier)},
          {"productIdentifier", entry.payment.productIdentifier},
          {"quantity", entry.payment.quantity},
          {"state", StoreKit::debugDescription(entry.state)},
          {"date", date ? Json(isoDate(*date)) : Json(nullptr)},
          {"originalTransactionIdentifier", originalJson(entry, ledger)},
          {"applicationUsername", orNull(entry.payment.applicationUsername)},
          {"error", errorJson(entry.error)},
          {"finished", entry.finished}};
}

std::optional<StoreKit::LedgerEntry> findEntry(const StoreKit::Ledger& ledger,
                                               const std::string& identifier) {
  for (auto& entry : ledger.all()) {
    if (entry.transactionIdentifier == identifier ||
        std::to_string(entry.identifier) == identifier) {
      return entry;
    }
  }
  return std::nullopt;
}

}  // namespace tqstore
