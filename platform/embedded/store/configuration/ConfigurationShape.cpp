#include "platform/embedded/store/configuration/ConfigurationShape.hpp"

#include <algorithm>
#include <span>

namespace StoreKit::detail {

namespace {

using Value = ConfigurationValue;

enum class Kind { text, wholeNumber, object, list };

// A key and what has to be there; `inner` is the shape of the object, or of each entry of the list.
struct Rule {
  std::string_view key;
  Kind kind;
  std::span<const Rule> inner{};
};

constexpr Rule kOffer[] = {{"displayPrice", Kind::text},
                           {"numberOfPeriods", Kind::wholeNumber},
                           {"paymentMode", Kind::text},
                           {"subscriptionPeriod", Kind::text}};
constexpr Rule kProduct[] = {{"productID", Kind::text},
                             {"type", Kind::text},
                             {"displayPrice", Kind::text},
                             {"recurringSubscriptionPeriod", Kind::text},
                             {"introductoryOffer", Kind::object, kOffer},
                             {"introductoryOffers", Kind::list, kOffer},
                             {"adHocOffers", Kind::list, kOffer}};
constexpr Rule kGroup[] = {{"subscriptions", Kind::list, kProduct}};
constexpr Rule kFile[] = {{"products", Kind::list, kProduct},
                          {"nonRenewingSubscriptions", Kind::list, kProduct},
                          {"subscriptionGroups", Kind::list, kGroup}};

std::string_view describe(Kind kind) {
  switch (kind) {
    case Kind::text:
      return "a text";
    case Kind::wholeNumber:
      return "a whole number";
    case Kind::object:
      return "an object";
    case Kind::list:
      return "a list";
  }
  return "";
}

bool isOf(Kind kind, const Value& value) {
  switch (kind) {
    case Kind::text:
      return std::holds_alternative<std::string>(value.content);
    case Kind::object:
      return std::holds_alternative<Value::Object>(value.content);
    case Kind::list:
      return std::holds_alternative<Value::Array>(value.content);
    case Kind::wholeNumber:
      break;
  }
  const auto* number = std::get_if<Value::Number>(&value.content);
  return number != nullptr && number->whole.has_value();
}

class ShapeCheck {
 public:
  explicit ShapeCheck(ConfigurationProblems& problems) : problems_(problems) {}

  void checkMembers(const Value& object, std::span<const Rule> rules) {
    for (const Rule& rule : rules) {
      if (const Value* value = findMember(object, rule.key)) checkValue(*value, rule);
    }
  }

 private:
  void checkValue(const Value& value, const Rule& rule) {
    if (!expect(rule.kind, value)) return;
    if (rule.kind == Kind::object) checkMembers(value, rule.inner);
    if (rule.kind != Kind::list) return;
    for (const Value& entry : *std::get_if<Value::Array>(&value.content)) {
      if (expect(Kind::object, entry)) checkMembers(entry, rule.inner);
    }
  }

  // Whether there is something of that kind.
  bool expect(Kind kind, const Value& value) {
    if (value.isNull()) return false;
    if (isOf(kind, value)) return true;
    problems_.refuse(value, mismatch(describe(kind), value) + "; the file is refused");
    return false;
  }

  ConfigurationProblems& problems_;
};

void warnAboutRepeatedKeys(const Value& value, ConfigurationProblems& problems);

void warnAboutRepeatedKeysOf(const Value::Object& members, const Value& object,
                             ConfigurationProblems& problems) {
  std::vector<std::string_view> keys;
  for (const auto& member : members) {
    keys.push_back(member.key);
    warnAboutRepeatedKeys(member.value, problems);
  }
  std::sort(keys.begin(), keys.end());
  for (auto at = keys.begin(); (at = std::adjacent_find(at, keys.end())) != keys.end();) {
    problems.warn(object, "has the key " + inQuotes(*at) + " more than once; the first one counts");
    at = std::upper_bound(at, keys.end(), *at);
  }
}

// Goes no deeper than a text may be nested.
void warnAboutRepeatedKeys(const Value& value, ConfigurationProblems& problems) {
  if (const auto* list = std::get_if<Value::Array>(&value.content)) {
    for (const Value& entry : *list) warnAboutRepeatedKeys(entry, problems);
  } else if (const auto* object = std::get_if<Value::Object>(&value.content)) {
    warnAboutRepeatedKeysOf(*object, value, problems);
  }
}

}  // namespace

void checkShape(const ConfigurationValue& root, ConfigurationProblems& problems) {
  ShapeCheck(problems).checkMembers(root, kFile);
  warnAboutRepeatedKeys(root, problems);
}

}  // namespace StoreKit::detail
