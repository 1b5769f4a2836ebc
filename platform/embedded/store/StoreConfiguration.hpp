#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Foundation/Decimal.hpp"
#include "platform/StoreKit/SKProductDiscount.hpp"
#include "platform/StoreKit/SKProductSubscriptionPeriod.hpp"
#include "platform/embedded/store/downloads/HostedContent.hpp"

namespace StoreKit {

/// What kind of thing a product is.
enum class ProductType {
  consumable,
  nonConsumable,
  nonRenewingSubscription,
  autoRenewableSubscription
};

/// "Consumable", "NonConsumable", "NonRenewingSubscription" or "RecurringSubscription": the word of
/// the configuration file.
[[nodiscard]] std::string_view toString(ProductType type);

/// What a configuration file says: what is for sale, and how the store is to behave.
///
/// A plain record of the file's contents, in the file's order, before a storefront or a locale is
/// chosen. `docs/storekit-configuration.md` describes the format and how odd files are read.
struct StoreConfiguration {
  /// A text of a product in one language.
  struct Localization {
    std::string locale{};  ///< as the file writes it: "en_US", "zh_Hans", "zh-Hans"
    std::string displayName{};
    std::string description{};
  };

  /// An offer that StoreKit 1 shows: the introductory one, or a promotional one.
  struct Offer {
    std::string offerID{};               ///< empty for an introductory offer
    Foundation::Decimal displayPrice{};  ///< 0 for a free one, whatever the file says
    SKProductDiscountPaymentMode paymentMode = SKProductDiscountPaymentMode::freeTrial;
    SKProductSubscriptionPeriod subscriptionPeriod{};
    std::uint64_t numberOfPeriods = 1;
  };

  /// What only an auto-renewable subscription has.
  struct Subscription {
    std::string groupID{};
    std::int64_t groupNumber = 1;  ///< level of service; 1 is the highest
    SKProductSubscriptionPeriod recurringPeriod{};
    std::optional<Offer> introductoryOffer{};
    std::vector<Offer> adHocOffers{};  ///< promotional offers
  };

  struct Product {
    std::string productID{};
    ProductType type = ProductType::consumable;
    Foundation::Decimal displayPrice{};  ///< in the storefront's currency, major units
    std::string referenceName{};         ///< the developer's own name for it; may be empty
    bool familyShareable = false;
    std::vector<Localization> localizations{};
    std::optional<Subscription> subscription{};
  };

  struct Settings {
    std::string locale = "en_US";
    std::string storefront = "USA";  ///< ISO 3166-1 alpha-3
    int timeRate = 0;
    bool askToBuyEnabled = false;
    bool interruptedPurchasesEnabled = false;
    bool billingRetryOnRenewalEnabled = false;
    bool billingGracePeriodEnabled = false;
    bool disableDialogs = false;
    bool failTransactionsEnabled = false;
    int failureError = 0;            ///< the store error code of `failTransactionsEnabled`
    bool canMakePayments = true;     ///< in no file; false: the user or the device may not pay
    double answerDelay = 0;          ///< in no file; seconds until the store answers
    int downloadSpeed = 0;           ///< in no file; bytes a second of each download, 0: no limit
    HostedContents hostedContent{};  ///< in no file
  };

  /// Products, then non-renewing subscriptions, then the subscriptions group by group, each in file
  /// order; of several entries with one identifier only the first.
  std::vector<Product> products{};
  Settings settings{};
};

/// Something in a configuration file that is not as it should be.
struct ConfigurationProblem {
  enum class Severity {
    warning,  ///< the file is usable; `message` says how this was read
    error,    ///< the file is refused
  };

  Severity severity = Severity::error;
  std::string file{};
  /// Where in the file: a JSON pointer ("/products/0/displayPrice"), "line 12, column 5" where the
  /// text is not JSON, or empty when it is the file as a whole.
  std::string place{};
  std::string message{};  ///< what is wrong there, and what follows from it

  /// "FILE: PLACE: MESSAGE", as it is shown to a person.
  [[nodiscard]] std::string description() const;
};

/// The outcome of reading a configuration file.
struct ConfigurationReading {
  /// Absent when the file is refused; then the problems that are errors say why.
  std::optional<StoreConfiguration> configuration{};
  /// Every problem, in the order of the file.
  std::vector<ConfigurationProblem> problems{};
};

/// The largest configuration file that is read: 64 MiB. The largest real one seen has 14 KB.
inline constexpr std::size_t kLargestConfigurationFile = std::size_t{64} << 20;

/// Reads a `.storekit` file of any version. Unknown keys are ignored; oddities of real files are
/// read in a defined way with a warning; a file that is missing, unreadable, a folder, empty, too
/// large or malformed is refused, and nothing is guessed about it. The file is only ever read.
///
/// Thread: any. May be slow: it reads from the disk.
[[nodiscard]] ConfigurationReading readConfiguration(const std::string& path);

/// The same for a text that is already in memory; `name` stands for the file in messages.
[[nodiscard]] ConfigurationReading parseConfiguration(std::string_view text,
                                                      const std::string& name);

}  // namespace StoreKit
