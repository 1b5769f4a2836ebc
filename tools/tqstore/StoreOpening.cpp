#include "tools/tqstore/StoreOpening.hpp"

#include <filesystem>
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

}  // namespace

std::unique_ptr<StoreKit::StoreSession> openStore(const GlobalOptions& options) {
  auto configuration = readNamed(options);
  if (!configuration) return nullptr;
  auto opened = openLedger(ledgerPath(options));
  if (!opened) return nullptr;
  return std::make_unique<StoreKit::StoreSession>(std::move(*configuration),
                                                  StoreKit::StoreSources(), std::move(opened));
}

std::optional<std::string> ledgerFile(const GlobalOptions& options) {
  if (options.ledger.empty() && !readNamed(options)) return std::nullopt;
  auto path = ledgerPath(options);
  if (path != ":memory:") return path;
  complain("a ledger in memory is this program's own: nothing will ever happen in it");
  return std::nullopt;
}

bool hasLedger(const std::string& path) {
  std::error_code error;
  const auto kind = std::filesystem::status(path, error).type();
  if (kind == std::filesystem::file_type::not_found) return false;
  return kind != std::filesystem::file_type::regular || std::filesystem::file_size(path, error) > 0;
}

std::unique_ptr<StoreKit::Ledger> openLedger(const std::string& path) {
  auto opening = StoreKit::SqliteLedger::open(path);
  if (!opening.ledger) complain(printable(opening.error));
  return std::move(opening.ledger);
}

StoreKit::Ledger& ledger() { return StoreKit::EmbeddedStore::current().ledger(); }

}  // namespace tqstore
