#include "tools/tqstore/StoreOpening.hpp"

#include <utility>

#include "platform/embedded/store/ledger/LedgerPlace.hpp"
#include "platform/embedded/store/ledger/SqliteLedger.hpp"

namespace tqstore {

namespace {

void complainOf(const std::vector<StoreKit::ConfigurationProblem>& problems) {
  for (const auto& problem : problems) {
    const bool warning = problem.severity == StoreKit::ConfigurationProblem::Severity::warning;
    complain((warning ? "warning: " : "") + printable(problem.description()));
  }
}

std::optional<StoreKit::StoreConfiguration> readNamed(const GlobalOptions& options) {
  if (options.config.empty()) {
    complain("no configuration: name one with --config FILE or TQSTORE_CONFIG");
    return std::nullopt;
  }
  auto reading = StoreKit::readConfiguration(options.config);
  complainOf(reading.problems);
  return std::move(reading.configuration);
}

std::unique_ptr<StoreKit::Ledger> openNamed(const GlobalOptions& options) {
  auto opening = StoreKit::SqliteLedger::open(
      options.ledger.empty() ? StoreKit::ledgerPathFor(options.config) : options.ledger);
  if (!opening.ledger) complain(printable(opening.error));
  return std::move(opening.ledger);
}

}  // namespace

// The locale takes the place of the configuration's. It is not set: a setting would be kept in the
// ledger, and hold for every program on it.
std::unique_ptr<StoreKit::StoreSession> openStore(const GlobalOptions& options) {
  auto configuration = readNamed(options);
  if (!configuration) return nullptr;
  if (!options.locale.empty()) configuration->settings.locale = options.locale;
  auto opened = openNamed(options);
  if (!opened) return nullptr;
  return std::make_unique<StoreKit::StoreSession>(std::move(*configuration),
                                                  StoreKit::StoreSources(), std::move(opened));
}

std::unique_ptr<StoreKit::Ledger> openLedger(const GlobalOptions& options) {
  if (options.ledger.empty() && !readNamed(options)) return nullptr;
  return openNamed(options);
}

StoreKit::Ledger& ledger() { return StoreKit::EmbeddedStore::current().ledger(); }

}  // namespace tqstore
