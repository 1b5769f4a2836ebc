#include "tools/tqstore/StoreOpening.hpp"

#include <filesystem>
#include <string>
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

std::string ledgerPath(const GlobalOptions& options) {
  return options.ledger.empty() ? StoreKit::ledgerPathFor(options.config) : options.ledger;
}

std::unique_ptr<StoreKit::Ledger> openAt(const std::string& path) {
  auto opening = StoreKit::SqliteLedger::open(path);
  if (!opening.ledger) complain(printable(opening.error));
  return std::move(opening.ledger);
}

// An empty file is one that a ledger is made of.
bool isMissing(const std::string& path) {
  std::error_code error;
  const bool there = std::filesystem::exists(path, error);
  const bool file = there && std::filesystem::is_regular_file(path, error);
  return !there || (file && std::filesystem::file_size(path, error) == 0);
}

}  // namespace

std::unique_ptr<StoreKit::StoreSession> openStore(const GlobalOptions& options) {
  auto configuration = readNamed(options);
  if (!configuration) return nullptr;
  auto opened = openAt(ledgerPath(options));
  if (!opened) return nullptr;
  return std::make_unique<StoreKit::StoreSession>(std::move(*configuration),
                                                  StoreKit::StoreSources(), std::move(opened));
}

std::unique_ptr<StoreKit::Ledger> openLedger(const GlobalOptions& options) {
  if (options.ledger.empty() && !readNamed(options)) return nullptr;
  const auto path = ledgerPath(options);
  if (path == ":memory:") {
    complain("a ledger in memory is this program's own: nothing will ever happen in it");
    return nullptr;
  }
  if (isMissing(path)) {
    complain(printable(path) + ": there is no ledger; the store makes it when it is opened");
    return nullptr;
  }
  return openAt(path);
}

StoreKit::Ledger& ledger() { return StoreKit::EmbeddedStore::current().ledger(); }

}  // namespace tqstore
