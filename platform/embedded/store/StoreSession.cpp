#include "platform/embedded/store/StoreSession.hpp"

#include <utility>

#include "platform/embedded/store/MemoryLedger.hpp"
#include "platform/embedded/store/Storefront.hpp"
#include "platform/embedded/store/ledger/LedgerPlace.hpp"
#include "platform/embedded/store/ledger/SqliteLedger.hpp"

namespace StoreKit {

namespace {

Scenario& scenario() { return EmbeddedStore::current().scenario(); }

}  // namespace

StoreSession::Opening StoreSession::open(const std::string& path, Options options) {
  auto reading = readConfiguration(path);
  Opening opening;
  opening.problems = std::move(reading.problems);
  if (!reading.configuration) return opening;
  auto ledger = SqliteLedger::open(options.ledger.empty() ? ledgerPathFor(path) : options.ledger);
  opening.ledgerError = std::move(ledger.error);
  if (!ledger.ledger) return opening;
  opening.session = std::make_unique<StoreSession>(
      std::move(*reading.configuration), std::move(options.sources), std::move(ledger.ledger));
  return opening;
}

StoreSession::StoreSession(StoreConfiguration configuration, StoreSources sources,
                           std::unique_ptr<Ledger> ledger) {
  if (!ledger) ledger = std::make_unique<MemoryLedger>();
  EmbeddedStore::unopened().open(std::move(configuration), std::move(ledger), std::move(sources));
}

const std::string& StoreSession::locale() const { return EmbeddedStore::current().locale(); }

void StoreSession::setLocale(std::string locale) {
  EmbeddedStore::current().setLocale(std::move(locale));
}

const std::string& StoreSession::storefront() const {
  return EmbeddedStore::current().storefront();
}

bool StoreSession::setStorefront(const std::string& country) {
  if (!storefrontCurrency(country)) return false;
  EmbeddedStore::current().setStorefront(country);
  return true;
}

const Catalogue& StoreSession::catalogue() const { return EmbeddedStore::current().catalogue(); }

void StoreSession::failPurchases(SKError::Code code, std::size_t count) {
  auto& failures = scenario().purchaseFailures;
  failures.insert(failures.end(), count, SKError(code).nsError());
}

void StoreSession::cancelPurchases(std::size_t count) {
  failPurchases(SKError::Code::paymentCancelled, count);
}

void StoreSession::failProductsRequests(const Foundation::NSError& error, std::size_t count) {
  auto& failures = scenario().productsFailures;
  failures.insert(failures.end(), count, error);
}

void StoreSession::setCanMakePayments(bool allowed) { scenario().canMakePayments = allowed; }

void StoreSession::setAnswersProductsInBackground(bool background) {
  scenario().answersProductsInBackground = background;
}

void StoreSession::relaunch() { EmbeddedStore::current().queue().restart(); }

}  // namespace StoreKit
