#pragma once

#include <optional>
#include <string>
#include <utility>

#include "TQStoreKitLib/detail/TaggedUnion.hpp"
#include "TQStoreKitLib/transactions/TQPurchase.hpp"
#include "TQStoreKitLib/transactions/TQSKError.hpp"
#include "platform/Foundation/NotificationCenter.hpp"
#include "platform/StoreKit/SKProduct.hpp"

namespace TQStoreKitLib {

/// Something that happened in the store, announced to whoever listens.
///
/// Events are posted through the default notification centre under the name `kTQStoreKitEvent`,
/// with the event as the notification's object and no user info:
///
///     auto observation = Foundation::NotificationCenter::defaultCenter().addObserver(
///         TQStoreKitEvent::kTQStoreKitEvent(), [](const Foundation::Notification& notification) {
///           if (const auto* event = notification.object.as<TQStoreKitEvent>()) log(*event);
///         });
///
/// Posting is synchronous: listeners run on the posting thread, which for the library's own events
/// is that of the payment queue or of a products answer (the main one).
class TQStoreKitEvent {
 public:
  /// What happened to a purchase.
  class PurchaseEvent {
   public:
    enum class Case { begin = 0, success = 1, failed = 2, cancel = 3 };

    /// A payment for this product is about to be added to the queue.
    struct Begin {
      StoreKit::SKProductPtr product;
    };
    /// The purchase failed, and not because the user cancelled it.
    struct Failed {
      std::string productIdentifier;
      std::optional<TQSKError> error;
    };
    /// The user cancelled the purchase.
    struct Cancel {
      StoreKit::SKProductPtr product;
    };

    [[nodiscard]] static PurchaseEvent begin(StoreKit::SKProductPtr product) {
      return PurchaseEvent(Union(std::in_place_index<0>, Begin{std::move(product)}));
    }
    [[nodiscard]] static PurchaseEvent success(TQPurchaseDetails details) {
      return PurchaseEvent(Union(std::in_place_index<1>, std::move(details)));
    }
    [[nodiscard]] static PurchaseEvent failed(std::string productIdentifier,
                                              std::optional<TQSKError> error) {
      return PurchaseEvent(
          Union(std::in_place_index<2>, Failed{std::move(productIdentifier), std::move(error)}));
    }
    [[nodiscard]] static PurchaseEvent cancel(StoreKit::SKProductPtr product) {
      return PurchaseEvent(Union(std::in_place_index<3>, Cancel{std::move(product)}));
    }

    [[nodiscard]] Case tag() const noexcept { return static_cast<Case>(union_.index()); }
    /// The payload of that case; null in every other.
    [[nodiscard]] const Begin* asBegin() const noexcept { return union_.get<0>(); }
    [[nodiscard]] const TQPurchaseDetails* asSuccess() const noexcept { return union_.get<1>(); }
    [[nodiscard]] const Failed* asFailed() const noexcept { return union_.get<2>(); }
    [[nodiscard]] const Cancel* asCancel() const noexcept { return union_.get<3>(); }

    /// Calls the function that takes this case's payload. A forgotten case does not compile.
    template <class... Functions>
    decltype(auto) match(Functions&&... functions) const {
      return union_.match(std::forward<Functions>(functions)...);
    }

   private:
    using Union = detail::TaggedUnion<Begin, TQPurchaseDetails, Failed, Cancel>;
    explicit PurchaseEvent(Union value) : union_(std::move(value)) {}
    Union union_;
  };

  /// What happened to a restore. The library posts none of these itself.
  class RestoreEvent {
   public:
    enum class Case { failed = 0, success = 1 };

    /// Restoring ended without an error.
    struct Success {};

    [[nodiscard]] static RestoreEvent failed(TQSKError error) {
      return RestoreEvent(Union(std::in_place_index<0>, std::move(error)));
    }
    [[nodiscard]] static RestoreEvent success() {
      return RestoreEvent(Union(std::in_place_index<1>, Success{}));
    }

    [[nodiscard]] Case tag() const noexcept { return static_cast<Case>(union_.index()); }
    /// The payload of that case; null in the other.
    [[nodiscard]] const TQSKError* asFailed() const noexcept { return union_.get<0>(); }
    [[nodiscard]] const Success* asSuccess() const noexcept { return union_.get<1>(); }

    /// Calls the function that takes this case's payload. A forgotten case does not compile.
    template <class... Functions>
    decltype(auto) match(Functions&&... functions) const {
      return union_.match(std::forward<Functions>(functions)...);
    }

   private:
    using Union = detail::TaggedUnion<TQSKError, Success>;
    explicit RestoreEvent(Union value) : union_(std::move(value)) {}
    Union union_;
  };

  enum class Case { purchase = 0, restore = 1 };

  [[nodiscard]] static TQStoreKitEvent purchase(PurchaseEvent event) {
    return TQStoreKitEvent(Union(std::in_place_index<0>, std::move(event)));
  }
  [[nodiscard]] static TQStoreKitEvent restore(RestoreEvent event) {
    return TQStoreKitEvent(Union(std::in_place_index<1>, std::move(event)));
  }

  [[nodiscard]] Case tag() const noexcept { return static_cast<Case>(union_.index()); }
  /// The payload of that case; null in the other.
  [[nodiscard]] const PurchaseEvent* asPurchase() const noexcept { return union_.get<0>(); }
  [[nodiscard]] const RestoreEvent* asRestore() const noexcept { return union_.get<1>(); }

  /// Calls the function that takes this case's payload. A forgotten case does not compile.
  template <class... Functions>
  decltype(auto) match(Functions&&... functions) const {
    return union_.match(std::forward<Functions>(functions)...);
  }

  /// One line for logs: "purchase.begin gems.100", "restore.success".
  [[nodiscard]] std::string description() const;

  /// The name that events are posted under: "kTQStoreKitEvent". The same object at each call; made
  /// on first use, from whatever thread.
  [[nodiscard]] static const Foundation::NotificationName& kTQStoreKitEvent();

  /// Posts `event`, unless `ignore` is true: then nothing happens at all. Listeners have run when
  /// it returns.
  ///
  /// Thread: any.
  static void broadcastEvent(const TQStoreKitEvent& event, bool ignore);

 private:
  using Union = detail::TaggedUnion<PurchaseEvent, RestoreEvent>;
  explicit TQStoreKitEvent(Union value) : union_(std::move(value)) {}
  Union union_;
};

}  // namespace TQStoreKitLib
