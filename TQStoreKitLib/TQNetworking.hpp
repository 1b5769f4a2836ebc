#pragma once

/// The HTTP client in one include. The manual is in TQNetworking/TQNetworking.hpp. To hop to the
/// main queue from a completion, include platform/Dispatch/MainQueue.hpp.

#include "TQStoreKitLib/TQNetworking/TQHttpHeaders.hpp"
#include "TQStoreKitLib/TQNetworking/TQNetworking.hpp"
#include "TQStoreKitLib/TQNetworking/TQRequest.hpp"
#include "TQStoreKitLib/TQNetworking/TQResponse.hpp"
