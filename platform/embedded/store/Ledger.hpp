#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Foundation/Date.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/StoreKit/SKPayment.hpp"
#include "platform/StoreKit/SKPaymentTransaction.hpp"
#include "platform/embedded/store/SubscriptionPeriod.hpp"

namespace StoreKit {

/// What the ledger knows about one transaction.
struct LedgerEntry {
  /// The ledger's own number: ascending, in the order in which transactions were added; 0 for one
  /// that was not added yet.
  std::int64_t identifier = 0;
  /// Which change of the ledger this is the outcome of: ascending over all its entries.
  std::int64_t revision = 0;
  SKPaymentTransactionState state = SKPaymentTransactionState::purchasing;
  bool finished = false;
  /// Who carries a purchase under way to its outcome: the number of a program that has the ledger
  /// open. Absent once there is an outcome.
  std::optional<std::int64_t> owner{};
  SKPayment::Values payment{};
  std::optional<std::string> transactionIdentifier{};
  std::optional<Foundation::Date> transactionDate{};
  std::optional<Foundation::NSError> error{};
  /// The entry of the purchase that a restored transaction repeats, or of the first period of the
  /// subscription that this one continues.
  std::optional<std::int64_t> original{};
  /// When it was refunded.
  std::optional<Foundation::Date> cancelDate{};
  /// The revision in which it was refunded; the ledger fills it in.
  std::optional<std::int64_t> refundRevision{};
  /// A purchase that was interrupted: it failed, and can still be resolved.
  bool hasPurchaseIssue = false;
  /// A purchase that the user began in the store, and that no application was asked about yet.
  bool asksApplication = false;
  /// Taken out of the ledger; only `changedAfter` still shows it.
  bool deleted = false;
  /// Only of a transaction that bought a period of an auto-renewable subscription.
  std::optional<SubscriptionPeriod> period{};
};

using LedgerEntries = std::vector<LedgerEntry>;
/// What was set in place of the configuration's settings, by name.
using LedgerSettings = std::map<std::string, std::string, std::less<>>;

/// Where the store keeps its transactions. Several programs may have one ledger open.
///
/// Thread: main.
class Ledger {
 public:
  /// What a change outlives.
  enum class Durability {
    killedProcess,  ///< the death of this program; costs no wait for the disk
    powerCut,       ///< the death of the machine; costs one wait
  };
  using Failure = std::optional<Foundation::NSError>;
  /// Fills in what depends on the number of an entry that is being added.
  using Complete = std::function<void(LedgerEntry&)>;

  Ledger() = default;
  Ledger(const Ledger&) = delete;
  Ledger& operator=(const Ledger&) = delete;
  virtual ~Ledger() = default;

  /// The whole path of its file; empty for a ledger that ends with the process.
  [[nodiscard]] virtual std::string path() const { return {}; }

  /// The number that stands for this program as an owner.
  [[nodiscard]] virtual std::int64_t owner() const = 0;

  /// Adds new entries, in this order: numbers each, lets `complete` (when there is one) see it, and
  /// writes all of them or, when it answers with an error, none.
  [[nodiscard]] virtual Failure add(LedgerEntries& entries, Durability durability,
                                    const Complete& complete = nullptr) = 0;

  /// Changes entries that were read before. One that somebody else has changed since (its revision
  /// differs) is left as they made it. Afterwards `entries` are what the ledger holds; when it
  /// answers with an error, nothing was changed, and they are as they were.
  [[nodiscard]] virtual Failure update(LedgerEntries& entries, Durability durability) = 0;

  /// How `replace` ended.
  struct Replacement {
    Failure error{};
    /// Somebody else was faster; nothing was written.
    bool conflict = false;
  };

  /// Changes entries that were read before and adds those that have no number yet, all of them or
  /// none: none when it answers with an error, when somebody else has changed one since, and when
  /// a subscription group would come to have a second running period.
  [[nodiscard]] virtual Replacement replace(LedgerEntries& entries, Durability durability,
                                            const Complete& complete = nullptr) = 0;

  /// Makes purchases under way whose owner is gone this program's own.
  [[nodiscard]] virtual Failure adoptOrphans() = 0;

  /// Absent when there is no such entry.
  [[nodiscard]] virtual std::optional<LedgerEntry> find(std::int64_t identifier) const = 0;

  /// Whether that entry is finished, or not there any more. No, when it cannot be read.
  [[nodiscard]] virtual bool isOver(std::int64_t identifier) const = 0;

  /// The entries that are not finished, in the order in which they were added.
  [[nodiscard]] virtual LedgerEntries unfinished() const = 0;

  /// The finished entries in state purchased, in the order in which they were added.
  [[nodiscard]] virtual LedgerEntries finishedPurchases() const = 0;

  /// All entries, in the order in which they were added.
  [[nodiscard]] virtual LedgerEntries all() const = 0;

  /// The running period of each subscription, in the order in which they were added.
  [[nodiscard]] virtual LedgerEntries runningPeriods() const = 0;

  /// The first period that was ever bought in a subscription group.
  [[nodiscard]] virtual std::optional<LedgerEntry> firstPeriod(std::string_view group) const = 0;

  /// The refunded entries that no application was told of yet, in the order of their refunds.
  [[nodiscard]] virtual LedgerEntries untoldRefunds() const = 0;

  /// Applications were told of the refunds up to `revision`.
  [[nodiscard]] virtual Failure tellRefunds(std::int64_t revision) = 0;

  /// The settings in force, and the revision in which they last changed.
  [[nodiscard]] virtual LedgerSettings settings() const = 0;
  [[nodiscard]] virtual std::int64_t settingsRevision() const = 0;

  /// Sets one, or with no value takes it back.
  [[nodiscard]] virtual Failure set(std::string_view setting,
                                    const std::optional<std::string>& value) = 0;

  /// Takes all of them back.
  [[nodiscard]] virtual Failure clearSettings() = 0;

  /// The entries that changed after `revision`, deleted ones included, in the order of their changes.
  [[nodiscard]] virtual LedgerEntries changedAfter(std::int64_t revision) const = 0;

  /// The last change of the ledger.
  [[nodiscard]] virtual std::int64_t revision() const = 0;

  /// From now on, `changed` is called within a tenth of a second of another program's change, and
  /// at times without one. It comes on a thread of the ledger's own, and not any more once the
  /// ledger is destroyed. At most one watcher.
  virtual void watch(std::function<void()> changed) = 0;
};

}  // namespace StoreKit
