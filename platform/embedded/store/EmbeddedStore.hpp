#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/embedded/store/Catalogue.hpp"
#include "platform/embedded/store/Ledger.hpp"
#include "platform/embedded/store/PaymentQueueEngine.hpp"
#include "platform/embedded/store/Scenario.hpp"
#include "platform/embedded/store/Schedule.hpp"
#include "platform/embedded/store/WakeUp.hpp"
#include "platform/embedded/store/downloads/DownloadQueue.hpp"
#include "platform/embedded/store/server/Sale.hpp"

namespace StoreKit {

/// Where the store takes the time and the identifiers from. A test replaces them, so that a
/// scenario replays exactly.
struct StoreSources {
  std::function<Foundation::Date()> now = Foundation::Date::now;
  /// The platform's identifier for the transaction with that ledger number: digits, never twice.
  std::function<std::string(std::int64_t ledgerIdentifier)> transactionIdentifier =
      [](std::int64_t ledgerIdentifier) {
        return std::to_string(2'000'000'000 + ledgerIdentifier);
      };
};

/// The process's one embedded store: what it sells, what it remembers, how it misbehaves, and its
/// payment queue. Applications control it through `StoreSession`.
///
/// Thread: main.
class EmbeddedStore {
 public:
  EmbeddedStore(const EmbeddedStore&) = delete;
  EmbeddedStore& operator=(const EmbeddedStore&) = delete;

  /// Made on first use, never destroyed. When none was opened before, it opens the configuration
  /// that the environment variable TQSTORE_CONFIG names, on the ledger that TQSTORE_LEDGER names
  /// (or the configuration's own); else an empty store in memory. It says so on standard error.
  [[nodiscard]] static EmbeddedStore& current();

  /// The same, without opening anything.
  [[nodiscard]] static EmbeddedStore& unopened();

  /// Sells what `configuration` says from now on, keeps its transactions in `ledger`, and starts
  /// the payment queue anew. Observers stay; what was under way is forgotten.
  void open(StoreConfiguration configuration, std::unique_ptr<Ledger> ledger, StoreSources sources);

  /// What holds now: the configuration's settings, and in their place what was set since.
  [[nodiscard]] const StoreConfiguration::Settings& settings() const { return settings_; }

  /// Sets one by name, for every program on this ledger; with no value the configuration's comes
  /// back. Answers with what is wrong: an invalid setting, or the ledger's error; then nothing
  /// changed.
  [[nodiscard]] std::optional<Foundation::NSError> set(std::string_view setting,
                                                       const std::optional<std::string>& value);
  /// Back to the configuration's settings, and no misbehaviour.
  void resetToDefaultState();

  struct Reloading {
    bool changed = false;
    bool storefrontChanged = false;
  };
  /// Takes in what was set in the ledger.
  Reloading reloadSettings();

  [[nodiscard]] const Catalogue& catalogue() const { return catalogue_; }
  [[nodiscard]] Ledger& ledger() { return *ledger_; }
  [[nodiscard]] Scenario& scenario() { return scenario_; }
  [[nodiscard]] const StoreSources& sources() const { return sources_; }
  [[nodiscard]] PaymentQueueEngine& queue() { return queue_; }
  [[nodiscard]] DownloadQueue& downloads() { return downloads_; }
  [[nodiscard]] Schedule& schedule() { return schedule_; }
  [[nodiscard]] Foundation::Date now() const { return sources_.now(); }
  /// Gives what is added to the ledger its transaction identifier, where it is to have one.
  [[nodiscard]] Ledger::Complete numbering() const;
  /// A sale of this moment.
  [[nodiscard]] Sale sale() const { return {*ledger_, catalogue_, settings_.timeRate, now()}; }

  /// Runs `step` in a later turn: once the store has had its time to answer.
  void answerLater(std::function<void()> step);

  /// Runs `step` in a turn some seconds later: what the ledger has refused is tried again.
  void tryLater(std::function<void()> step);

  /// Whether this program is the one that the purchases are for; see `StoreSession`.
  [[nodiscard]] bool isForApplication() const { return forApplication_; }
  void setForApplication(bool forApplication) { forApplication_ = forApplication; }

  /// Does what has become due, and sets the alarm for what is due next. To be called when the clock
  /// was moved, or when something with a date was added.
  void catchUp();
  /// Commits the renewals that are due; the queue hears of them in a later turn.
  void renewSubscriptions();
  /// Sets the alarm for what is due next.
  void setAlarm();

  /// How many times a store was opened: tells one ledger, and one configuration, from the next.
  [[nodiscard]] std::uint64_t openings() const { return openings_; }

 private:
  EmbeddedStore();
  ~EmbeddedStore() = default;

  void openFromEnvironment();
  void applySettings();
  void runIn(double seconds, std::function<void()> step);

  StoreConfiguration configuration_;
  StoreConfiguration::Settings settings_;
  std::int64_t settingsRevision_ = 0;
  Catalogue catalogue_;
  std::unique_ptr<Ledger> ledger_;
  Scenario scenario_;
  StoreSources sources_;
  std::uint64_t openings_ = 0;
  Schedule schedule_;
  bool renewalFailed_ = false;
  bool forApplication_ = true;
  WakeUp wakeUp_;
  DownloadQueue downloads_{*this};
  PaymentQueueEngine queue_{*this};
};

}  // namespace StoreKit
