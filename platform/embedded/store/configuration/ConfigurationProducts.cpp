#include "platform/embedded/store/configuration/ConfigurationProducts.hpp"

#include <algorithm>
#include <utility>

#include "platform/embedded/store/configuration/ConfigurationOffers.hpp"

namespace StoreKit::detail {

namespace {

using Localization = StoreConfiguration::Localization;
using Product = StoreConfiguration::Product;
using Subscription = StoreConfiguration::Subscription;

constexpr std::string_view kLeftOut = "left out";

constexpr ProductType kTypes[] = {ProductType::consumable, ProductType::nonConsumable,
                                  ProductType::nonRenewingSubscription,
                                  ProductType::autoRenewableSubscription};

char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lowered(x) == lowered(y); });
}

std::optional<ProductType> typeNamed(std::string_view word) {
  const auto* const found = std::find_if(std::begin(kTypes), std::end(kTypes), [&](auto type) {
    return equalIgnoringCase(word, toString(type));
  });
  return found == std::end(kTypes) ? std::nullopt : std::optional(*found);
}

void warnAboutPlace(const ConfigurationFields& entry, ProductType type, ProductType usualType) {
  constexpr auto kSubscription = ProductType::autoRenewableSubscription;
  if ((type == kSubscription) == (usualType == kSubscription)) return;
  const std::string place = type == kSubscription ? "outside of" : "in";
  entry.warn("type", "a " + std::string(toString(type)) + " " + place +
                         " a subscription group; read as its type says");
}

ProductType readType(const ConfigurationFields& entry, const ConfigurationSection& section) {
  const auto written = entry.text("type");
  const auto type = typeNamed(written).value_or(section.usualType);
  if (written != toString(type)) {
    const bool missing = entry.find("type") == nullptr;
    const auto oddity = missing ? "has no type" : "the type " + inQuotes(written) + " is unknown";
    entry.warn("type", oddity + "; read as " + std::string(toString(type)));
  }
  warnAboutPlace(entry, type, section.usualType);
  return type;
}

std::vector<Localization> readLocalizations(const ConfigurationFields& entry,
                                            ConfigurationProblems& problems) {
  std::vector<Localization> result;
  for (const auto& value : entry.list("localizations")) {
    const ConfigurationFields fields(value, problems);
    Localization text{fields.text("locale"), fields.text("displayName"),
                      fields.text("description")};
    if (text.locale.empty()) {
      fields.warn("names no locale; left out");
    } else {
      result.push_back(std::move(text));
    }
  }
  return result;
}

std::string readGroupID(const ConfigurationFields& entry, const ConfigurationSection& section) {
  const auto written = entry.text("subscriptionGroupID");
  const auto& groupID = section.groupID.empty() ? written : section.groupID;
  if (groupID.empty()) {
    entry.warn("belongs to no group that has an identifier; read with an empty one");
  } else if (!written.empty() && written != groupID) {
    entry.warn("subscriptionGroupID",
               inQuotes(written) + " is not the group around it; read as " + inQuotes(groupID));
  }
  return groupID;
}

std::int64_t readGroupNumber(const ConfigurationFields& entry) {
  const auto written = entry.wholeNumber("groupNumber", 1);
  if (written >= 1) return written;
  entry.warn("groupNumber", std::to_string(written) + " is no level of service; read as 1");
  return 1;
}

std::optional<Subscription> readSubscription(const ConfigurationFields& entry,
                                             const ConfigurationSection& section,
                                             ConfigurationProblems& problems) {
  const auto period = entry.duration("recurringSubscriptionPeriod", kLeftOut);
  if (!period) return std::nullopt;
  Subscription result;
  result.recurringPeriod = *period;
  result.groupID = readGroupID(entry, section);
  result.groupNumber = readGroupNumber(entry);
  result.introductoryOffer = readIntroductoryOffer(entry, problems);
  result.adHocOffers = readPromotionalOffers(entry, problems);
  return result;
}

}  // namespace

std::optional<Product> readProduct(const ConfigurationFields& entry,
                                   const ConfigurationSection& section,
                                   ConfigurationProblems& problems) {
  const auto price = entry.price("displayPrice", kLeftOut);
  if (!price) return std::nullopt;
  Product product;
  product.productID = entry.text("productID");
  product.displayPrice = *price;
  product.type = readType(entry, section);
  if (product.type == ProductType::autoRenewableSubscription) {
    product.subscription = readSubscription(entry, section, problems);
    if (!product.subscription) return std::nullopt;
  }
  product.referenceName = entry.text("referenceName");
  product.familyShareable = entry.flag("familyShareable");
  product.localizations = readLocalizations(entry, problems);
  return product;
}

}  // namespace StoreKit::detail
