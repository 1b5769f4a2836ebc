#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/embedded/store/Catalogue.hpp"
#include "platform/embedded/store/Ledger.hpp"
#include "platform/embedded/store/PaymentQueueEngine.hpp"
#include "platform/embedded/store/Scenario.hpp"

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

  /// What the user sees from now on: texts in that language, prices of that country. What was
  /// fetched before stays as it was.
  void setLocale(std::string locale);
  void setStorefront(std::string storefront);
  [[nodiscard]] const std::string& locale() const { return configuration_.settings.locale; }
  [[nodiscard]] const std::string& storefront() const { return configuration_.settings.storefront; }

  [[nodiscard]] const Catalogue& catalogue() const { return catalogue_; }
  [[nodiscard]] Ledger& ledger() { return *ledger_; }
  [[nodiscard]] Scenario& scenario() { return scenario_; }
  [[nodiscard]] const StoreSources& sources() const { return sources_; }
  [[nodiscard]] PaymentQueueEngine& queue() { return queue_; }
  /// How many times a store was opened: tells one ledger, and one configuration, from the next.
  [[nodiscard]] std::uint64_t openings() const { return openings_; }

 private:
  EmbeddedStore() = default;
  ~EmbeddedStore() = default;

  void openFromEnvironment();
  void rebuildCatalogue();

  StoreConfiguration configuration_;  // its settings follow what was set since
  Catalogue catalogue_;
  std::unique_ptr<Ledger> ledger_;
  Scenario scenario_;
  StoreSources sources_;
  std::uint64_t openings_ = 0;
  PaymentQueueEngine queue_{*this};
};

}  // namespace StoreKit
