#pragma once

#include <cstdint>
#include <optional>

#include "platform/Foundation/Date.hpp"

namespace StoreKit {

/// How the bytes of one download come in, by the store's clock, since it was last started, resumed,
/// or given another speed.
struct DownloadPace {
  Foundation::Date begin{};
  std::int64_t atBegin = 0;  ///< so many bytes were there

  /// So many bytes are to be there at `now`, with so many a second. A clock that goes back takes
  /// none away.
  [[nodiscard]] std::int64_t due(Foundation::Date now, int speed) const;

  /// Seconds until `left` more bytes are there, when `copied` of them are there at `now`: at
  /// `speed`, or, when there is none (0), as fast as they came so far. Absent while none came.
  [[nodiscard]] std::optional<double> secondsFor(std::int64_t left, std::int64_t copied,
                                                 Foundation::Date now, int speed) const;

 private:
  [[nodiscard]] double secondsUntil(Foundation::Date now) const;
};

}  // namespace StoreKit
