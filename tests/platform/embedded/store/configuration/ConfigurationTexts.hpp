#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "platform/embedded/store/StoreConfiguration.hpp"

namespace StoreKit::tests {

/// A file with one consumable, in which `fields` (members in JSON, each ending in a comma) come
/// first, so that they override those of the consumable.
inline std::string textWithProduct(std::string_view fields) {
  return R"({"products":[{)" + std::string(fields) +
         R"("productID":"gems","type":"Consumable","displayPrice":"0.99"}]})";
}

/// The same for one monthly subscription in the group "G".
inline std::string textWithSubscription(std::string_view fields) {
  return R"({"subscriptionGroups":[{"id":"G","subscriptions":[{)" + std::string(fields) +
         R"("productID":"club","type":"RecurringSubscription","displayPrice":"3.99",)" +
         R"("recurringSubscriptionPeriod":"P1M"}]}]})";
}

inline std::string textWithSettings(std::string_view members) {
  return R"({"settings":{)" + std::string(members) + "}}";
}

inline ConfigurationReading parse(std::string_view text) {
  return parseConfiguration(text, "shop.storekit");
}

/// The problems apart from those about repeated keys, one per line as "PLACE: MESSAGE".
inline std::string problemsOf(const ConfigurationReading& reading) {
  std::string lines;
  for (const auto& problem : reading.problems) {
    if (problem.message.find("more than once") != std::string::npos) continue;
    lines += problem.place + ": " + problem.message + "\n";
  }
  return lines;
}

/// Whether the file is usable with exactly this to say about it.
inline bool isReadWith(const ConfigurationReading& reading, std::string_view problems) {
  return reading.configuration.has_value() && problemsOf(reading) == problems;
}

/// Whether the file is refused because of this about this place, and of nothing else.
inline bool isRefusedWith(const ConfigurationReading& reading, std::string_view place,
                          std::string_view message) {
  std::size_t reasons = 0;
  bool found = false;
  for (const auto& problem : reading.problems) {
    if (problem.severity != ConfigurationProblem::Severity::error) continue;
    ++reasons;
    found = problem.place == place && problem.message == message;
  }
  return !reading.configuration && found && reasons == 1;
}

}  // namespace StoreKit::tests
