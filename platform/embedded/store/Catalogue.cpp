#include "platform/embedded/store/Catalogue.hpp"

#include <functional>
#include <utility>

#include "platform/embedded/store/Localization.hpp"
#include "platform/embedded/store/Storefront.hpp"
#include "platform/embedded/store/downloads/ContentListing.hpp"

namespace StoreKit {

namespace {

// What makes two products one: the configuration that they come from, and the identifier.
class CatalogueKey final : public Foundation::NativeObject {
 public:
  CatalogueKey(std::uint64_t origin, std::string productIdentifier)
      : origin_(origin), productIdentifier_(std::move(productIdentifier)) {}

  bool isEqual(const NativeObject& other) const override {
    const auto* key = dynamic_cast<const CatalogueKey*>(&other);
    return key && key->origin_ == origin_ && key->productIdentifier_ == productIdentifier_;
  }
  std::size_t hash() const override { return std::hash<std::string>{}(productIdentifier_); }

 private:
  std::uint64_t origin_;
  std::string productIdentifier_;
};

SKProductDiscount makeDiscount(const StoreConfiguration::Offer& offer, SKProductDiscountType type,
                               const Foundation::Locale& locale) {
  SKProductDiscount discount;
  discount.price = offer.displayPrice;
  discount.priceLocale = locale;
  discount.subscriptionPeriod = offer.subscriptionPeriod;
  discount.numberOfPeriods = offer.numberOfPeriods;
  discount.paymentMode = offer.paymentMode;
  discount.type = type;
  if (type == SKProductDiscountType::subscription) discount.identifier = offer.offerID;
  return discount;
}

void addSubscription(SKProduct::Values& values,
                     const StoreConfiguration::Subscription& subscription) {
  values.subscriptionPeriod = subscription.recurringPeriod;
  values.subscriptionGroupIdentifier = subscription.groupID;
  if (subscription.introductoryOffer) {
    values.introductoryPrice = makeDiscount(
        *subscription.introductoryOffer, SKProductDiscountType::introductory, values.priceLocale);
  }
  for (const auto& offer : subscription.adHocOffers) {
    values.discounts.push_back(
        makeDiscount(offer, SKProductDiscountType::subscription, values.priceLocale));
  }
}

SKProduct::Values makeValues(const StoreConfiguration::Product& product, const std::string& locale,
                             const Foundation::Locale& pricesIn) {
  SKProduct::Values values;
  values.productIdentifier = product.productID;
  if (const auto* text = chooseLocalization(product.localizations, locale)) {
    values.localizedTitle = text->displayName;
    values.localizedDescription = text->description;
  }
  values.price = product.displayPrice;
  values.priceLocale = pricesIn;
  values.isFamilyShareable = product.familyShareable;
  if (product.subscription) addSubscription(values, *product.subscription);
  return values;
}

void addContent(SKProduct::Values& values, const HostedContents& hosted) {
  const auto found = hosted.find(values.productIdentifier);
  if (found == hosted.end() || found->second.folder.empty()) return;
  values.isDownloadable = true;
  values.downloadContentLengths = {listContent(found->second.folder).listing.length()};
  values.downloadContentVersion = found->second.version;
}

}  // namespace

Catalogue::Catalogue(const StoreConfiguration& configuration, const std::string& locale,
                     const std::string& storefront, std::uint64_t origin,
                     const HostedContents& hosted) {
  const auto pricesIn = priceLocale(locale, storefront);
  for (const auto& product : configuration.products) {
    auto values = makeValues(product, locale, pricesIn);
    addContent(values, hosted);
    entries_.push_back(
        {product.type,
         std::make_shared<const SKProduct>(
             std::move(values), std::make_shared<const CatalogueKey>(origin, product.productID)),
         product.subscription ? product.subscription->groupNumber : 1});
    places_.emplace(entries_.back().product->productIdentifier(), entries_.size() - 1);
  }
}

const CatalogueEntry* Catalogue::find(std::string_view productIdentifier) const {
  const auto found = places_.find(productIdentifier);
  return found == places_.end() ? nullptr : &entries_[found->second];
}

}  // namespace StoreKit
