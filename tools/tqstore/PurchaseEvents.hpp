#pragma once

#include "platform/Foundation/NotificationCenter.hpp"

namespace tqstore {

/// Shows the library's purchase events, as lines or as JSON, as long as what is returned lives.
[[nodiscard]] Foundation::NotificationObservation showPurchaseEvents(bool json);

}  // namespace tqstore
