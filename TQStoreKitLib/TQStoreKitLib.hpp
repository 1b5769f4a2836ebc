#pragma once

/// Everything of the library in one include. The door for most applications is
/// TQStoreKitLib/transactions/TQStoreKit.hpp.

#include "TQStoreKitLib/TQNetworking.hpp"
#include "TQStoreKitLib/manager/TQStoreKitEvent.hpp"
#include "TQStoreKitLib/manager/TQStoreKitManager.hpp"
#include "TQStoreKitLib/products/ProductPricing.hpp"
#include "TQStoreKitLib/transactions/TQStoreKit.hpp"
#include "TQStoreKitLib/utilities/CodableDefaults.hpp"
#include "TQStoreKitLib/utilities/OptionalString.hpp"
