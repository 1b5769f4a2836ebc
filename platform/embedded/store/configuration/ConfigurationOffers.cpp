#include "platform/embedded/store/configuration/ConfigurationOffers.hpp"

#include <algorithm>

namespace StoreKit::detail {

namespace {

using Offer = StoreConfiguration::Offer;
using PaymentMode = SKProductDiscountPaymentMode;

constexpr std::string_view kNoOffer = "there is no such offer";
constexpr std::int64_t kMostPeriods = 999'999;

std::optional<PaymentMode> readPaymentMode(const ConfigurationFields& fields) {
  const auto written = fields.text("paymentMode");
  if (written == "free") return PaymentMode::freeTrial;
  if (written == "payAsYouGo") return PaymentMode::payAsYouGo;
  if (written == "payUpFront") return PaymentMode::payUpFront;
  if (written == "none") return std::nullopt;
  const auto message = fields.find("paymentMode") == nullptr
                           ? std::string("has no paymentMode; ")
                           : "the payment mode " + inQuotes(written) + " is unknown; ";
  fields.warn("paymentMode", message + std::string(kNoOffer));
  return std::nullopt;
}

std::uint64_t readNumberOfPeriods(const ConfigurationFields& fields) {
  const auto written = fields.wholeNumber("numberOfPeriods", 1);
  const auto read = std::clamp<std::int64_t>(written, 1, kMostPeriods);
  if (read != written) {
    fields.warn("numberOfPeriods", std::to_string(written) + " is no possible number of periods; " +
                                       "read as " + std::to_string(read));
  }
  return static_cast<std::uint64_t>(read);
}

std::optional<Offer> readOffer(const ConfigurationFields& fields) {
  const auto mode = readPaymentMode(fields);
  if (!mode) return std::nullopt;
  const auto period = fields.duration("subscriptionPeriod", kNoOffer);
  if (!period) return std::nullopt;
  const bool isFree = *mode == PaymentMode::freeTrial;
  const auto price = isFree ? Foundation::Decimal() : fields.price("displayPrice", kNoOffer);
  if (!price) return std::nullopt;
  return Offer{{}, *price, *mode, *period, readNumberOfPeriods(fields)};
}

const Offer* findOffer(const std::vector<Offer>& offers, const std::string& offerID) {
  const auto found = std::find_if(offers.begin(), offers.end(),
                                  [&](const Offer& offer) { return offer.offerID == offerID; });
  return found == offers.end() ? nullptr : &*found;
}

void addPromotionalOffer(const ConfigurationFields& fields, std::vector<Offer>& offers) {
  const auto offerID = fields.text("offerID");
  if (offerID.empty()) return fields.warn("has no offerID to name it by; left out");
  if (findOffer(offers, offerID) != nullptr) {
    return fields.warn(
        "offerID", "the offer " + inQuotes(offerID) + " is there already; the first one is kept");
  }
  if (auto offer = readOffer(fields)) {
    offer->offerID = offerID;
    offers.push_back(std::move(*offer));
  }
}

}  // namespace

std::optional<Offer> readIntroductoryOffer(const ConfigurationFields& subscription,
                                           ConfigurationProblems& problems) {
  for (const auto& entry : subscription.list("introductoryOffers")) {
    if (entry.isNull()) continue;
    if (auto offer = readOffer(ConfigurationFields(entry, problems))) return offer;
  }
  const auto* single = subscription.find("introductoryOffer");
  if (single == nullptr) return std::nullopt;
  return readOffer(ConfigurationFields(*single, problems));
}

std::vector<Offer> readPromotionalOffers(const ConfigurationFields& subscription,
                                         ConfigurationProblems& problems) {
  std::vector<Offer> offers;
  for (const auto& entry : subscription.list("adHocOffers")) {
    if (!entry.isNull()) addPromotionalOffer(ConfigurationFields(entry, problems), offers);
  }
  return offers;
}

}  // namespace StoreKit::detail
