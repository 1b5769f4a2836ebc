#pragma once

#include <optional>

#include "TQStoreKitLib/TQNetworking/TQNWError.hpp"

namespace TQStoreKitLib {

/// What a request brought: a result, an error, or neither.
///
/// Thread: a plain value.
template <class T>
struct TQResponse {
  std::optional<T> data{};
  std::optional<TQNWError> error{};
};

}  // namespace TQStoreKitLib
