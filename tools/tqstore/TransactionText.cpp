#include "tools/tqstore/TransactionText.hpp"

#include <charconv>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <system_error>

#include "TQStoreKitLib/transactions/TransactionDescriptions.hpp"
#include "platform/embedded/store/EmbeddedStore.hpp"
#include "platform/embedded/store/LedgerTransaction.hpp"
#include "tools/tqstore/Console.hpp"

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

// Only as the tool itself writes it: no sign, no zeros in front.
std::optional<std::int64_t> wholeNumber(const std::string& text) {
  std::int64_t number = 0;
  const auto* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  const bool good = error == std::errc() && stop == end && std::to_string(number) == text;
  return good ? std::optional(number) : std::nullopt;
}

// What the platform's identifiers are ahead of the ledger's numbers.
std::int64_t firstPlatformIdentifier() {
  return wholeNumber(StoreKit::StoreSources().transactionIdentifier(0)).value_or(0);
}

// The renewal could not be paid, and the store tries again.
bool isRetried(const StoreKit::LedgerEntry& entry) {
  return entry.period && entry.period->running && entry.period->retryingSince;
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

std::string stateText(const StoreKit::LedgerEntry& entry) {
  auto text = StoreKit::debugDescription(entry.state);
  if (entry.asksApplication) text += ", not yet asked";
  if (entry.hasPurchaseIssue) text += ", interrupted";
  if (entry.finished) text += ", finished";
  if (entry.cancelDate) text += ", refunded";
  if (isRetried(entry)) text += ", renewal unpaid";
  return text;
}

std::string periodText(const StoreKit::LedgerEntry& entry) {
  if (!entry.period || !entry.period->running) return "";
  const auto& period = *entry.period;
  auto text = (isRetried(entry) ? "ended " : "until ") + isoDate(period.ends);
  if (isRetried(entry)) return text;
  if (!period.renews) return text + ", ends then";
  const bool same = period.renewsAs.empty() || period.renewsAs == entry.payment.productIdentifier;
  return text + ", renews" + (same ? "" : " as " + printable(period.renewsAs));
}

StoreKit::LedgerEntry latest(const StoreKit::LedgerEntry& entry, const StoreKit::Ledger& ledger) {
  return ledger.find(entry.identifier).value_or(entry);
}

std::optional<StoreKit::LedgerEntry> findEntry(const StoreKit::Ledger& ledger,
                                               const std::string& identifier) {
  const auto number = wholeNumber(identifier);
  if (!number) return std::nullopt;
  if (auto entry = ledger.find(*number)) return entry;
  auto likely = ledger.find(*number - firstPlatformIdentifier());
  if (likely && likely->transactionIdentifier == identifier) return likely;
  for (auto& entry : ledger.all()) {
    if (entry.transactionIdentifier == identifier) return std::move(entry);
  }
  return std::nullopt;
}

std::optional<StoreKit::LedgerEntry> entryOf(const StoreKit::SKPaymentTransactionPtr& transaction) {
  const auto* known = dynamic_cast<const StoreKit::LedgerTransaction*>(transaction.get());
  return known ? std::optional<StoreKit::LedgerEntry>(known->entry()) : std::nullopt;
}

std::optional<StoreKit::LedgerEntry> entryOf(
    const TQStoreKitLib::TQPaymentTransaction& transaction) {
  return entryOf(platformTransaction(transaction));
}

}  // namespace tqstore
