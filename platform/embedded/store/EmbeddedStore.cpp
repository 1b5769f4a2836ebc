#include "platform/embedded/store/EmbeddedStore.hpp"

#include <cstdlib>
#include <utility>

#include "platform/Dispatch/MainQueue.hpp"
#include "platform/Foundation/Print.hpp"
#include "platform/StoreKit/SKError.hpp"
#include "platform/embedded/store/MemoryLedger.hpp"
#include "platform/embedded/store/ledger/LedgerPlace.hpp"
#include "platform/embedded/store/ledger/SqliteLedger.hpp"

namespace StoreKit {

namespace {

// Null, and a line on standard error, when it is refused.
std::unique_ptr<Ledger> openNamedLedger(const std::string& configurationPath) {
  auto opening = SqliteLedger::open(ledgerPathFor(configurationPath));
  if (!opening.ledger) {
    Foundation::warn(opening.error + ": transactions are kept in memory.");
  }
  return std::move(opening.ledger);
}

}  // namespace

EmbeddedStore& EmbeddedStore::unopened() {
  static auto& store = *new EmbeddedStore;
  return store;
}

EmbeddedStore& EmbeddedStore::current() {
  auto& store = unopened();
  if (store.openings_ == 0) store.openFromEnvironment();
  return store;
}

void EmbeddedStore::open(StoreConfiguration configuration, std::unique_ptr<Ledger> ledger,
                         StoreSources sources) {
  ++openings_;
  configuration_ = std::move(configuration);
  rebuildCatalogue();
  ledger_ = std::move(ledger);
  ledger_->watch([] { Dispatch::mainQueue().async([] { unopened().queue().absorbChanges(); }); });
  sources_ = std::move(sources);
  scenario_ = Scenario();
  const auto& settings = configuration_.settings;
  if (settings.failTransactionsEnabled) {
    scenario_.everyPurchaseFails =
        SKError(static_cast<SKError::Code>(settings.failureError)).nsError();
  }
  queue_.restart();
}

void EmbeddedStore::setLocale(std::string locale) {
  configuration_.settings.locale = std::move(locale);
  rebuildCatalogue();
}

void EmbeddedStore::setStorefront(std::string storefront) {
  configuration_.settings.storefront = std::move(storefront);
  rebuildCatalogue();
}

void EmbeddedStore::rebuildCatalogue() {
  catalogue_ = Catalogue(configuration_, locale(), storefront(), openings_);
}

void EmbeddedStore::openFromEnvironment() {
  StoreConfiguration configuration;
  std::unique_ptr<Ledger> ledger;
  const char* const path = std::getenv("TQSTORE_CONFIG");
  if (path == nullptr || *path == '\0') {
    Foundation::warn("No store was opened and TQSTORE_CONFIG is not set: the store is empty.");
  } else {
    auto reading = readConfiguration(path);
    for (const auto& problem : reading.problems) Foundation::warn(problem.description());
    Foundation::warn(reading.configuration
                         ? "No store was opened: using TQSTORE_CONFIG, " + std::string(path) + "."
                         : "No store was opened and TQSTORE_CONFIG cannot be used: the store is "
                           "empty.");
    if (reading.configuration) {
      configuration = std::move(*reading.configuration);
      ledger = openNamedLedger(path);
    }
  }
  if (!ledger) ledger = std::make_unique<MemoryLedger>();
  open(std::move(configuration), std::move(ledger), {});
}

}  // namespace StoreKit
