#include "platform/embedded/store/EmbeddedStore.hpp"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "platform/Dispatch/MainQueue.hpp"
#include "platform/Foundation/Print.hpp"
#include "platform/embedded/store/MemoryLedger.hpp"
#include "platform/embedded/store/StoreSettings.hpp"
#include "platform/embedded/store/ledger/LedgerPlace.hpp"
#include "platform/embedded/store/ledger/SqliteLedger.hpp"
#include "platform/embedded/store/server/Renewals.hpp"
#include "platform/embedded/store/server/StoreSessionError.hpp"

namespace StoreKit {

namespace {

// Seconds.
constexpr double kShortestPause = 0.01;
constexpr double kPauseAfterFailure = 5;

// Null, and a line on standard error, when it is refused.
std::unique_ptr<Ledger> openNamedLedger(const std::string& configurationPath) {
  auto opening = SqliteLedger::open(ledgerPathFor(configurationPath));
  if (!opening.ledger) {
    Foundation::warn(opening.error + ": transactions are kept in memory.");
  }
  return std::move(opening.ledger);
}

}  // namespace

EmbeddedStore::EmbeddedStore()
    : wakeUp_([] { Dispatch::mainQueue().async([] { unopened().catchUp(); }); }) {}

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
  for (auto& step : schedule_.takeAll()) Dispatch::mainQueue().async(std::move(step));
  configuration_ = std::move(configuration);
  ledger_ = std::move(ledger);
  ledger_->watch([] { Dispatch::mainQueue().async([] { unopened().queue().absorbChanges(); }); });
  sources_ = std::move(sources);
  scenario_ = Scenario();
  applySettings();
  downloads_.moveTo(DownloadPlace(ledger_->path()));
  queue_.restart();
  catchUp();
}

void EmbeddedStore::applySettings() {
  settingsRevision_ = ledger_->settingsRevision();
  settings_ = configuration_.settings;
  for (const auto& [name, value] : ledger_->settings()) {
    const auto problem = setSetting(settings_, name, value);
    if (problem) Foundation::warn("The ledger has a setting that is left out: " + *problem + ".");
  }
  catalogue_ = Catalogue(configuration_, settings_.locale, settings_.storefront, openings_,
                         settings_.hostedContent);
}

EmbeddedStore::Reloading EmbeddedStore::reloadSettings() {
  if (ledger_->settingsRevision() == settingsRevision_) return {};
  const auto storefrontBefore = settings_.storefront;
  const auto speedBefore = settings_.downloadSpeed;
  applySettings();
  if (settings_.downloadSpeed != speedBefore) downloads_.speedDidChange();
  return {.changed = true, .storefrontChanged = settings_.storefront != storefrontBefore};
}

std::optional<Foundation::NSError> EmbeddedStore::set(std::string_view setting,
                                                      const std::optional<std::string>& value) {
  auto trial = settings_;
  const auto text = value ? value : settingText(configuration_.settings, setting);
  auto problem = setSetting(trial, setting, text.value_or(""));
  const bool hosted = value && isHostedContentSetting(setting);
  if (hosted && !problem) {
    problem = hostedContentObjection(trial.hostedContent, setting, catalogue_);
  }
  if (problem) return storeSessionError(StoreSessionError::invalidSetting, *std::move(problem));
  const auto kept = hosted ? settingText(trial, setting) : value;
  if (auto error = ledger_->set(setting, kept)) return error;
  queue_.absorbSettings();
  return std::nullopt;
}

void EmbeddedStore::resetToDefaultState() {
  scenario_ = Scenario();
  if (const auto error = ledger_->clearSettings()) {
    Foundation::warn("The settings stay as they are: " + error->localizedDescription());
  }
  queue_.absorbSettings();
}

void EmbeddedStore::answerLater(std::function<void()> step) {
  if (settings_.answerDelay == 0) return Dispatch::mainQueue().async(std::move(step));
  runIn(settings_.answerDelay, std::move(step));
}

void EmbeddedStore::tryLater(std::function<void()> step) {
  runIn(kPauseAfterFailure, std::move(step));
}

void EmbeddedStore::runIn(double seconds, std::function<void()> step) {
  const double moment = now().timeIntervalSince1970() + seconds;
  schedule_.add(Foundation::Date::sinceEpoch(moment),
                [step = std::move(step)] { Dispatch::mainQueue().async(step); });
  setAlarm();
}

void EmbeddedStore::renewSubscriptions() {
  renewalFailed_ = false;
  if (ledger_->runningPeriods().empty()) return;
  auto changing = sale();
  Renewals(changing, catalogue_, settings_).runDue(now());
  auto entries = changing.changes();
  if (entries.empty()) return;
  const auto written = ledger_->replace(entries, Ledger::Durability::powerCut, numbering());
  if (written.error) {
    renewalFailed_ = true;
    Foundation::warn("Subscriptions are renewed later: " + written.error->localizedDescription());
  }
  queue_.absorbLater();
}

Ledger::Complete EmbeddedStore::numbering() const {
  return [this](LedgerEntry& entry) {
    if (entry.transactionDate) {
      entry.transactionIdentifier = sources_.transactionIdentifier(entry.identifier);
    }
  };
}

void EmbeddedStore::catchUp() {
  if (openings_ == 0) return;
  renewSubscriptions();
  if (schedule_.next()) schedule_.run(now());
  setAlarm();
}

void EmbeddedStore::setAlarm() {
  Sale looking(*ledger_, catalogue_, settings_.timeRate, Foundation::Date());
  auto next = Renewals(looking, catalogue_, settings_).nextDue();
  const auto step = schedule_.next();
  if (step && (!next || *step < *next)) next = step;
  if (!next) return wakeUp_.cancel();
  const double wait = next->timeIntervalSince1970() - now().timeIntervalSince1970();
  wakeUp_.setIn(std::max(wait, renewalFailed_ ? kPauseAfterFailure : kShortestPause));
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
