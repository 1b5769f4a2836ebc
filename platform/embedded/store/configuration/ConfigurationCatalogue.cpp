#include "platform/embedded/store/configuration/ConfigurationCatalogue.hpp"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "platform/embedded/store/configuration/ConfigurationProducts.hpp"

namespace StoreKit::detail {

namespace {

using Value = ConfigurationValue;

class CatalogueReader {
 public:
  explicit CatalogueReader(ConfigurationProblems& problems) : problems_(problems) {}

  void addEntries(const Value::Array& entries, const ConfigurationSection& section) {
    for (const Value& entry : entries) addEntry(entry, section);
  }

  void addGroup(const Value& group) {
    if (group.isNull()) return problems_.warn(group, "is null; left out");
    const ConfigurationFields fields(group, problems_);
    addEntries(fields.list("subscriptions"),
               {ProductType::autoRenewableSubscription, fields.text("id")});
  }

  std::vector<StoreConfiguration::Product> take() { return std::move(products_); }

 private:
  void addEntry(const Value& entry, const ConfigurationSection& section) {
    const ConfigurationFields fields(entry, problems_);
    const auto* const written = fields.find("productID");
    if (written != nullptr && problems_.refused(*written)) return;
    const auto productID = fields.text("productID");
    if (productID.empty()) return fields.warn("has no productID; left out");
    if (const auto first = entries_.find(productID); first != entries_.end()) {
      return fields.warn("has the same productID " + inQuotes(productID) + " as " +
                         problems_.pointer(*first->second) + "; the first one is kept");
    }
    if (auto product = readProduct(fields, section, problems_)) {
      products_.push_back(std::move(*product));
      entries_.emplace(productID, &entry);
    }
  }

  ConfigurationProblems& problems_;
  std::vector<StoreConfiguration::Product> products_;
  std::unordered_map<std::string, const Value*> entries_;  // the one that each product is from
};

bool namesProduct(const Value& entry) { return findMember(entry, "productID") != nullptr; }

// Whether this is a list of products, or of groups with products in them.
bool listsProducts(const Value& value) {
  const auto* list = std::get_if<Value::Array>(&value.content);
  return list != nullptr && std::any_of(list->begin(), list->end(), [](const Value& entry) {
           const auto* inner = findMember(entry, "subscriptions");
           return namesProduct(entry) || (inner != nullptr && listsProducts(*inner));
         });
}

bool isSection(std::string_view key) {
  return key == "products" || key == "nonRenewingSubscriptions" || key == "subscriptionGroups";
}

void warnAboutStrayProducts(const Value& file, ConfigurationProblems& problems) {
  for (const auto& [key, value] : *std::get_if<Value::Object>(&file.content)) {
    if (isSection(key) || !listsProducts(value)) continue;
    return problems.warn(value, "products are not read from " + inQuotes(key) +
                                    ", only from \"products\", \"nonRenewingSubscriptions\" and "
                                    "\"subscriptionGroups\"; the catalogue is empty");
  }
}

}  // namespace

std::vector<StoreConfiguration::Product> readCatalogue(const ConfigurationFields& file,
                                                       ConfigurationProblems& problems) {
  CatalogueReader reader(problems);
  reader.addEntries(file.list("products"), {ProductType::nonConsumable, {}});
  reader.addEntries(file.list("nonRenewingSubscriptions"),
                    {ProductType::nonRenewingSubscription, {}});
  for (const Value& group : file.list("subscriptionGroups")) reader.addGroup(group);
  auto products = reader.take();
  if (products.empty()) warnAboutStrayProducts(file.object(), problems);
  return products;
}

}  // namespace StoreKit::detail
