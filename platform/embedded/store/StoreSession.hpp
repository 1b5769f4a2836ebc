#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "platform/Foundation/NSError.hpp"
#include "platform/StoreKit/SKError.hpp"
#include "platform/embedded/store/Catalogue.hpp"
#include "platform/embedded/store/EmbeddedStore.hpp"
#include "platform/embedded/store/StoreConfiguration.hpp"

namespace StoreKit {

/// Opens the embedded store and makes it behave: succeed, fail, cancel, come back after a restart.
///
///     auto opening = StoreSession::open("shop.storekit");
///     if (!opening.session) return complain(opening.problems);
///     opening.session->cancelPurchases();  // the next one
///
/// There is one store in a process; opening another replaces it, and earlier sessions control
/// the new one. Destroying a session closes nothing.
/// Thread: main.
class StoreSession {
 public:
  struct Options {
    /// The ledger file, or ":memory:" for a ledger that ends with the process. Empty: what
    /// `ledgerPathFor` says, which lasts from run to run.
    std::string ledger{};
    StoreSources sources{};
  };

  struct Opening {
    /// Null when the configuration or the ledger was refused; the store that was open before is
    /// then untouched.
    std::unique_ptr<StoreSession> session{};
    /// Everything that is odd about the configuration, in its order.
    std::vector<ConfigurationProblem> problems{};
    /// Why the ledger was refused; empty when it was not.
    std::string ledgerError{};
  };

  /// Opens the configuration file `path` and its ledger.
  [[nodiscard]] static Opening open(const std::string& path) { return open(path, Options()); }
  [[nodiscard]] static Opening open(const std::string& path, Options options);

  /// Opens a configuration that is there already. `ledger` keeps the transactions; without one they
  /// end with the process.
  explicit StoreSession(StoreConfiguration configuration, StoreSources sources = {},
                        std::unique_ptr<Ledger> ledger = nullptr);

  /// The user's language: the one that products are described in, and half of their price locale.
  /// At first the configuration's. A locale that nobody knows gets the neutral forms.
  [[nodiscard]] const std::string& locale() const;
  void setLocale(std::string locale);

  /// The country that the user buys in (ISO 3166-1 alpha-3, "BRA"): it decides the currency. At
  /// first the configuration's.
  [[nodiscard]] const std::string& storefront() const;
  /// False, and nothing changes, for a country that does not exist.
  [[nodiscard]] bool setStorefront(const std::string& country);

  /// What the store sells, in the order of the configuration. Valid until another store is opened,
  /// or the locale or the storefront changes.
  [[nodiscard]] const Catalogue& catalogue() const;

  /// The next `count` purchases fail with this store error.
  void failPurchases(SKError::Code code, std::size_t count = 1);

  /// The user cancels the next `count` purchases.
  void cancelPurchases(std::size_t count = 1);

  /// The next `count` products requests fail with `error`.
  void failProductsRequests(const Foundation::NSError& error, std::size_t count = 1);

  /// False: the user or the device may not pay, and every purchase fails. Default true.
  void setCanMakePayments(bool allowed);

  /// True: products requests are answered on a thread of their own. Default false.
  void setAnswersProductsInBackground(bool background);

  /// What the application sees when it is ended and started again: purchases that had not begun
  /// are gone, those that had begun are carried on, and everything unfinished is delivered anew,
  /// as new objects. Observers stay.
  void relaunch();
};

}  // namespace StoreKit
