#pragma once

#include <vector>

#include "platform/embedded/store/Catalogue.hpp"

namespace tqstore {

/// Shows products to a person, in this order.
void writeProducts(const std::vector<StoreKit::CatalogueEntry>& entries);

}  // namespace tqstore
