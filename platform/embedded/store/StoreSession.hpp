#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Foundation/NSError.hpp"
#include "platform/StoreKit/SKError.hpp"
#include "platform/embedded/store/Catalogue.hpp"
#include "platform/embedded/store/EmbeddedStore.hpp"
#include "platform/embedded/store/StoreConfiguration.hpp"
#include "platform/embedded/store/StoreTransaction.hpp"
#include "platform/embedded/store/server/StoreSessionError.hpp"

namespace StoreKit {

/// Opens the embedded store and controls it, with the names that the platform's test session has.
///
///     auto opening = StoreSession::open("shop.storekit");
///     for (const auto& problem : opening.problems) complain(problem.description());
///     if (!opening.ledgerError.empty()) complain(opening.ledgerError);
///     if (!opening.session) return;
///     opening.session->setAskToBuyEnabled(true);
///
/// There is one store in a process; opening another replaces it, and earlier sessions control
/// the new one. Destroying a session closes nothing.
///
/// **Settings** begin with what the configuration says. What is set here is kept in the ledger and
/// holds for every program on it, until `resetToDefaultState`. A purchase is judged by the settings
/// of the moment in which its outcome is decided.
///
/// **Transactions** are named by the ledger's own number (`StoreTransaction::identifier`). What is
/// done to them is committed before the call returns; the queue's observers, of every program on
/// the ledger, hear of it in a later turn. When an operation answers with an error, of the domain
/// `kStoreSessionErrorDomain` or of the ledger, nothing was changed.
///
/// Thread: main.
class StoreSession {
 public:
  using Failure = std::optional<Foundation::NSError>;

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
    /// Why the ledger was refused; empty when it was not. `problems` says nothing of it.
    std::string ledgerError{};
  };

  /// Opens the configuration file `path` and its ledger.
  [[nodiscard]] static Opening open(const std::string& path) { return open(path, Options()); }
  [[nodiscard]] static Opening open(const std::string& path, Options options);

  /// Opens a configuration that is there already. `ledger` keeps the transactions; without one they
  /// end with the process.
  explicit StoreSession(StoreConfiguration configuration, StoreSources sources = {},
                        std::unique_ptr<Ledger> ledger = nullptr);

  /// What the store sells, in the order of the configuration. Valid until another store is opened,
  /// or a setting changes.
  [[nodiscard]] const Catalogue& catalogue() const;

  // --- settings -----------------------------------------------------------------------------

  [[nodiscard]] const StoreConfiguration::Settings& settings() const;

  /// Any setting by name, as text (`settingNames` lists them).
  [[nodiscard]] std::optional<std::string> setting(std::string_view name) const;
  Failure set(std::string_view name, const std::string& value);

  /// Takes everything back that was set, also errors that were ordered. Transactions stay.
  void resetToDefaultState();

  /// The user's language: the one that products are described in, and half of their price locale.
  /// A locale that nobody knows gets the neutral forms.
  [[nodiscard]] const std::string& locale() const { return settings().locale; }
  Failure setLocale(const std::string& locale) { return set("locale", locale); }

  /// The country that the user buys in (ISO 3166-1 alpha-3, "BRA"): it decides the currency. One
  /// that does not exist is an error. Observers hear of a change; what was fetched stays as it is.
  [[nodiscard]] const std::string& storefront() const { return settings().storefront; }
  Failure setStorefront(const std::string& country) { return set("storefront", country); }

  /// The embedded store never shows a dialog; kept for those who read the setting.
  [[nodiscard]] bool disableDialogs() const { return settings().disableDialogs; }
  void setDisableDialogs(bool disable) { setFlag("disableDialogs", disable); }

  /// Purchases are deferred until they are approved or declined.
  [[nodiscard]] bool askToBuyEnabled() const { return settings().askToBuyEnabled; }
  void setAskToBuyEnabled(bool enabled) { setFlag("askToBuyEnabled", enabled); }

  /// Purchases fail with error 0 (Unknown), and can be resolved.
  [[nodiscard]] bool interruptedPurchasesEnabled() const {
    return settings().interruptedPurchasesEnabled;
  }
  void setInterruptedPurchasesEnabled(bool enabled) {
    setFlag("interruptedPurchasesEnabled", enabled);
  }

  /// Purchases fail with `failureError`. Any code will do.
  [[nodiscard]] bool failTransactionsEnabled() const { return settings().failTransactionsEnabled; }
  void setFailTransactionsEnabled(bool enabled) { setFlag("failTransactionsEnabled", enabled); }
  [[nodiscard]] SKError::Code failureError() const;
  void setFailureError(SKError::Code code);

  /// How fast subscriptions go by: one of the platform's numbers, see `TimeRate.hpp`; any other is
  /// an error. Periods that are running end when they were going to.
  [[nodiscard]] int timeRate() const { return settings().timeRate; }
  Failure setTimeRate(int rate) { return set("timeRate", std::to_string(rate)); }

  /// Renewals cannot be paid, and are tried again for a while. Switched off, those that are being
  /// tried succeed.
  [[nodiscard]] bool billingRetryOnRenewalEnabled() const {
    return settings().billingRetryOnRenewalEnabled;
  }
  void setBillingRetryOnRenewalEnabled(bool enabled) {
    setFlag("billingRetryOnRenewalEnabled", enabled);
  }
  /// A renewal that is paid within the grace period follows without a gap.
  [[nodiscard]] bool billingGracePeriodEnabled() const {
    return settings().billingGracePeriodEnabled;
  }
  void setBillingGracePeriodEnabled(bool enabled) { setFlag("billingGracePeriodEnabled", enabled); }

  /// False: the user or the device may not pay, and every purchase fails with error 4.
  [[nodiscard]] bool canMakePayments() const { return settings().canMakePayments; }
  void setCanMakePayments(bool allowed) { setFlag("canMakePayments", allowed); }

  /// Seconds, by the store's clock, until it answers: product requests, purchases, restores.
  [[nodiscard]] double answerDelay() const { return settings().answerDelay; }
  Failure setAnswerDelay(double seconds);

  // --- hosted content -----------------------------------------------------------------------

  /// Hosts the folder for the product, in that version (integers with points between them): its
  /// products are downloadable, and their transactions bring a download; those that are in a queue
  /// already, from the next start on. An empty folder: hosts nothing for it any more.
  ///
  /// The folder stays the developer's, and is read when something is downloaded. It may hold files
  /// and folders, nothing else. A setting like those above (`HostedContent.hpp` has its names).
  Failure setHostedContent(const std::string& productIdentifier, const std::string& folder,
                           const std::string& version = "1.0");

  /// Bytes a second of each download, by the store's clock; 0, as at first: a piece in every turn
  /// of the main queue.
  [[nodiscard]] int downloadSpeed() const { return settings().downloadSpeed; }
  Failure setDownloadSpeed(int bytesPerSecond) {
    return set("downloadSpeed", std::to_string(bytesPerSecond));
  }

  /// In this program, and until another store is opened, downloads arrive in `folder`, in place of
  /// tqstore in the user's caches.
  void setDownloadsFolder(const std::string& folder);

  // --- errors, in this program --------------------------------------------------------------

  /// The next `count` purchases fail with this store error; `kAlways`, all of them; 0, none.
  void failPurchases(SKError::Code code, std::size_t count = 1);

  /// The user cancels the next `count` purchases.
  void cancelPurchases(std::size_t count = 1);

  /// The next `count` products requests fail with `error`; `kAlways`, all of them; 0, none.
  void failProductsRequests(const Foundation::NSError& error, std::size_t count = 1);

  /// The next restore fails with `error`, when so many transactions have been restored.
  void failRestore(const Foundation::NSError& error, std::size_t after = 0);

  /// The next `count` downloads that are started fail with `error`, half-way; `kAlways`, all of
  /// them; 0, none.
  void failDownloads(const Foundation::NSError& error, std::size_t count = 1);

  /// True: products requests are answered on a thread of their own. Default false.
  void setAnswersProductsInBackground(bool background);

  // --- transactions -------------------------------------------------------------------------

  /// In the order in which they were added.
  [[nodiscard]] std::vector<StoreTransaction> allTransactions() const;

  /// Removes all, or one with those that name it as their original: the renewals of a first period
  /// and restored copies of the subscription, the restored copies of another purchase. Those that
  /// are in a queue leave it; a subscription whose running period is removed is over.
  Failure clearTransactions();
  Failure deleteTransaction(std::int64_t identifier);

  /// A purchase outside the application: it is in the queue as purchased. Always succeeds for a
  /// product that is sold.
  Failure buyProduct(const std::string& productIdentifier);

  /// A purchase that the user begins in the store: the application is asked whether to carry on,
  /// as soon as one observes the queue.
  Failure beginStorePurchase(const std::string& productIdentifier);

  /// Refunds what was purchased, at once: it is not restored any more, a subscription whose running
  /// period it is ends, and observers hear of the loss. When no application runs, the next one that
  /// starts is told.
  Failure refundTransaction(std::int64_t identifier);

  /// Settle a deferred purchase, also one that was finished meanwhile: it is delivered as
  /// purchased, or as failed with error 2 (PaymentCancelled).
  Failure approveAskToBuyTransaction(std::int64_t identifier);
  Failure declineAskToBuyTransaction(std::int64_t identifier);

  /// Settles an interrupted purchase, or a renewal that could not be paid: the application
  /// receives a new transaction.
  Failure resolveIssueForTransaction(std::int64_t identifier);

  // --- subscriptions ------------------------------------------------------------------------

  /// Of the running subscription that the transaction belongs to.
  Failure enableAutoRenewForTransaction(std::int64_t identifier);
  Failure disableAutoRenewForTransaction(std::int64_t identifier);

  /// Ends the period and starts the next, now; turns auto-renewal on.
  Failure forceRenewalOfSubscription(const std::string& productIdentifier);
  /// Ends the subscription, now.
  Failure expireSubscription(const std::string& productIdentifier);

  /// Without the user's consent the subscription ends with its period. Nobody consents, or declines,
  /// who was not asked.
  Failure requestPriceIncreaseConsentForTransaction(std::int64_t identifier);
  Failure consentToPriceIncreaseForTransaction(std::int64_t identifier);
  Failure declinePriceIncreaseForTransaction(std::int64_t identifier);

  // --- the run ------------------------------------------------------------------------------

  /// What the application sees when it is ended and started again: purchases that had not begun
  /// are gone, those that had begun are carried on, and everything unfinished is delivered anew,
  /// as new objects. Observers stay.
  void relaunch();

  /// Whether this program is the application that the purchases are for, as it is at first. One
  /// that only buys beside it says no, before it observes: then it carries nothing on that a
  /// program which is gone has left, is not asked about purchases that were begun in the store, and
  /// is not told of refunds; all of that waits for the application. It holds for every store that
  /// is opened.
  static void setIsForApplication(bool isForApplication);

  /// To be called when a clock of the application's own was moved: what has become due happens now
  /// (renewals, slow answers), and is reported in later turns.
  void clockDidChange();

 private:
  void setFlag(std::string_view name, bool value);
};

}  // namespace StoreKit
