#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "TQStoreKitLib/products/TQProductsRequest.hpp"
#include "TQStoreKitLib/transactions/PaymentQueueController.hpp"
#include "TQStoreKitLib/transactions/TQPurchaseResult.hpp"
#include "TQStoreKitLib/transactions/TQRestoreResults.hpp"

namespace TQStoreKitLib {

/// How to buy a product that is known by its identifier. Say what differs from the defaults:
/// `{.quantity = 3}`.
struct TQIdentifierPurchaseOptions {
  /// How many; the store sells 1 to 10 at once.
  std::int64_t quantity = 1;
  /// True: the library finishes the transaction once the completion has run. False: the application
  /// calls `TQStoreKit::finishTransaction` when it has delivered. A failed one is always finished.
  bool atomically = true;
  /// Opaque account identifier of the application's own user, handed to the store as it is.
  std::string applicationUsername{};
  /// Asks the store's sandbox to treat the purchase as one that a parent must approve.
  bool simulatesAskToBuyInSandbox = false;
};

/// How to buy a product that was fetched before.
struct TQProductPurchaseOptions {
  /// As for a purchase by identifier.
  std::int64_t quantity = 1;
  /// As for a purchase by identifier.
  bool atomically = true;
  /// As for a purchase by identifier.
  std::string applicationUsername{};
  /// As for a purchase by identifier.
  bool simulatesAskToBuyInSandbox = false;
  /// A signed promotional offer to buy with.
  std::optional<TQPaymentDiscount> paymentDiscount{};
};

struct TQRestoreOptions {
  /// True: the library finishes each restored transaction itself. False: the application does.
  bool atomically = true;
  /// Only what was bought with this name; always handed to the store, also when empty.
  std::string applicationUsername{};
};

struct TQCompleteTransactionsOptions {
  /// True: the library finishes each transaction before the callback hears of it, a deferred one
  /// too. The embedded store delivers its approval all the same; whether a phone does is not known.
  /// False: the application does, after it has delivered. A failed one is always finished.
  bool atomically = true;
};

/// The store, for applications: fetch products, buy, restore, finish, control downloads.
///
///     TQStoreKit::completeTransactions({}, deliver);  // once, at launch
///     TQStoreKit::purchaseProduct("gems.100", {.quantity = 3}, [](const TQPurchaseResult& result)
///     {
///       if (const auto* details = result.asSuccess()) grant(details->productId);
///     });
///
/// Every operation returns at once. The first one that needs the store makes the one shared
/// instance, which from then on observes the payment queue until the process ends; only
/// `canMakePayments` and reading a handler do not.
///
/// Refunds, and a change of the storefront, are told to observers of the queue only: after
/// `completeTransactions`, add a `StoreKit::SKPaymentTransactionObserver` of your own to
/// `StoreKit::SKPaymentQueue::defaultQueue()`, and leave the transactions to the library.
/// Thread: main; a debug build says so on standard error when a call comes on another.
/// Callbacks come on: the main queue, each at most once, except those of `completeTransactions` and
/// the handlers. An empty callback is allowed: then nobody is told. Callbacks may call any
/// operation.
class TQStoreKit {
 public:
  using PurchaseCompletion = std::function<void(const TQPurchaseResult&)>;
  using RestoreCompletion = std::function<void(const TQRestoreResults&)>;
  using CompleteTransactionsCallback = TQCompleteTransactions::Callback;
  using ShouldAddStorePaymentHandler = PaymentQueueController::ShouldAddStorePaymentHandler;
  using UpdatedDownloadsHandler = PaymentQueueController::UpdatedDownloadsHandler;

  TQStoreKit() = delete;

  /// False when the user or the device may not pay. A purchase fails then.
  [[nodiscard]] static bool canMakePayments();

  /// Asks the store for the products of these identifiers. Calls for the same set share a request
  /// in flight (see `TQInAppProducts::retrieveProductsInfo`).
  ///
  /// From inside a `completion`, a fetch of the very same set is never answered, nor a purchase by
  /// identifier when that was the set. Begin it in a later turn (`Dispatch::mainQueue().async`), or
  /// buy the product that has come.
  static void fetchProductsInfo(const TQProductIdentifiers& productIds,
                                TQProductsCallback completion);

  /// Fetches the product, then buys it.
  ///
  /// Order: the event `purchase.begin`, the payment is added to the queue; when the store has
  /// decided, one of the events `success`, `cancel` and `failed`, then `completion`, then the
  /// transaction is finished (when atomic or failed).
  /// Fails: for a product that the store does not know, or when it cannot be asked, `completion`
  /// runs with the error and then the event `failed` is posted; the queue is not touched. To try
  /// again from there, or to fetch it from a listener of `begin`, takes a later turn (see
  /// `fetchProductsInfo`). A cancelled purchase is an error for `completion`; only the event tells
  /// it apart.
  ///
  /// Ask to Buy: the deferred transaction is given to the callback of `completeTransactions`, and
  /// `completion` waits until the purchase is approved or declined (by the embedded store as if
  /// cancelled). When that happens in a later run, `completeTransactions` there hears of it.
  ///
  /// An outcome is recognised by its product alone: the first one, also of a purchase by another
  /// program or in an earlier run, goes to the `completion` for that product that has waited
  /// longest. Let one purchase of a product end before the next begins.
  static void purchaseProduct(const std::string& productId, TQIdentifierPurchaseOptions options,
                              PurchaseCompletion completion);

  /// Buys a product that was fetched before; it must not be null. Order and failures as above.
  static void purchaseProduct(const StoreKit::SKProductPtr& product,
                              TQProductPurchaseOptions options, PurchaseCompletion completion);

  /// Brings back what the user bought before and can have again. `completion` runs at the end, with
  /// everything that was restored and everything that failed. No event is posted.
  ///
  /// While a restore is under way, another one is dropped: its `completion` is never called.
  static void restorePurchases(TQRestoreOptions options, RestoreCompletion completion);

  /// Registers, once at launch, for the transactions that nobody in this run waits for: left over
  /// from an earlier run, approved late, bought outside the application; and for all that are
  /// deferred. `callback` runs for each batch with such transactions. Look at the state of each:
  /// failed and deferred ones are not paid for.
  ///
  /// A second registration is dropped with a printed line.
  static void completeTransactions(TQCompleteTransactionsOptions options,
                                   CompleteTransactionsCallback callback);

  /// Ends a transaction whose record says `needsFinishTransaction`, once it was delivered. One that
  /// is not the platform's is printed and left alone.
  static void finishTransaction(const TQPaymentTransaction& transaction);

  /// Control hosted downloads.
  static void start(const StoreKit::SKDownloads& downloads);
  static void pause(const StoreKit::SKDownloads& downloads);
  static void resume(const StoreKit::SKDownloads& downloads);
  static void cancel(const StoreKit::SKDownloads& downloads);

  /// Asked, on the main queue, whether to go on with a purchase that the user began in the store
  /// itself. Without a handler it does not go on. A new handler replaces the old one at once.
  static void setShouldAddStorePaymentHandler(ShouldAddStorePaymentHandler handler);
  [[nodiscard]] static const ShouldAddStorePaymentHandler& shouldAddStorePaymentHandler();

  /// Told, on the main queue, about the state and progress of downloads. A new handler replaces the
  /// old one at once.
  static void setUpdatedDownloadsHandler(UpdatedDownloadsHandler handler);
  [[nodiscard]] static const UpdatedDownloadsHandler& updatedDownloadsHandler();
};

}  // namespace TQStoreKitLib
