#include "tools/tqstore/commandline/CompletionValues.hpp"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>

#include "platform/embedded/store/StoreSettings.hpp"
#include "platform/embedded/store/ledger/LedgerPlace.hpp"
#include "platform/embedded/store/ledger/SqliteLedger.hpp"
#include "tools/tqstore/TransactionText.hpp"

namespace tqstore {

namespace {

constexpr std::int64_t kLatestChanges = 100;

Definitions products(const GlobalOptions& options) {
  Definitions list;
  const auto reading = StoreKit::readConfiguration(options.config);
  if (!reading.configuration) return list;
  for (const auto& product : reading.configuration->products) {
    list.emplace_back(product.productID, std::string(toString(product.type)));
  }
  return list;
}

Definitions transactions(const GlobalOptions& options) {
  if (options.ledger.empty() && options.config.empty()) return {};
  const auto path =
      options.ledger.empty() ? StoreKit::ledgerPathFor(options.config) : options.ledger;
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return {};
  const auto opening = StoreKit::SqliteLedger::open(path);
  if (!opening.ledger) return {};
  std::map<std::int64_t, StoreKit::LedgerEntry> entries;
  for (auto& entry : opening.ledger->unfinished()) entries.emplace(entry.identifier, entry);
  for (auto& entry : opening.ledger->changedAfter(opening.ledger->revision() - kLatestChanges)) {
    if (!entry.deleted) entries.emplace(entry.identifier, entry);
  }
  Definitions list;
  for (const auto& [identifier, entry] : entries) {
    list.emplace_back(std::to_string(identifier),
                      entry.payment.productIdentifier + ", " + stateText(entry));
  }
  return list;
}

Definitions settings() {
  Definitions list;
  for (const auto name : StoreKit::settingNames()) list.emplace_back(name, "");
  return list;
}

// Only of a setting that is true or false.
Definitions valuesOfSetting(const std::string& setting) {
  const auto value = StoreKit::settingText(StoreKit::StoreConfiguration::Settings(), setting);
  if (value != "true" && value != "false") return {};
  return {{"true", ""}, {"false", ""}};
}

}  // namespace

Completion valuesOf(const CompletedValue& value, const GlobalOptions& options) {
  for (const char* file : {"FILE", "FOLDER", "DESTINATION", "CONTENT"}) {
    if (value.name == file) return {.files = true};
  }
  if (value.name == "PRODUCT") return {.candidates = products(options)};
  if (value.name == "TRANSACTION") return {.candidates = transactions(options)};
  if (value.name == "KEY") return {.candidates = settings()};
  if (value.name == "VALUE") return {.candidates = valuesOfSetting(value.before)};
  if (value.name == "SHELL") return {.candidates = {{"bash", ""}, {"fish", ""}, {"zsh", ""}}};
  return {};
}

}  // namespace tqstore
