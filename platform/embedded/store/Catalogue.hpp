#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/StoreKit/SKProduct.hpp"
#include "platform/embedded/store/StoreConfiguration.hpp"

namespace StoreKit {

/// One thing for sale.
struct CatalogueEntry {
  ProductType type = ProductType::consumable;
  SKProductPtr product;          ///< never null
  std::int64_t groupNumber = 1;  ///< of a subscription: its level of service, 1 is the highest
};

/// What the store sells, as one user sees it: in one language, with the prices of one storefront.
///
/// Thread: immutable, any.
class Catalogue {
 public:
  Catalogue() = default;

  /// `locale` and `storefront` are those of the user. Products of two catalogues are equal when
  /// they have one identifier and the catalogues have one `origin`: the number of the configuration
  /// that both were made from. `hosted` is looked through for its length.
  Catalogue(const StoreConfiguration& configuration, const std::string& locale,
            const std::string& storefront, std::uint64_t origin, const HostedContents& hosted = {});

  /// In the order of the configuration.
  [[nodiscard]] const std::vector<CatalogueEntry>& entries() const { return entries_; }

  /// Compares exactly. Null when nothing has that identifier; valid as long as the catalogue.
  [[nodiscard]] const CatalogueEntry* find(std::string_view productIdentifier) const;

 private:
  std::vector<CatalogueEntry> entries_;
  std::unordered_map<std::string_view, std::size_t> places_;  // by texts of the products
};

}  // namespace StoreKit
