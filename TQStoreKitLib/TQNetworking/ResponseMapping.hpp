#pragma once

#include <string>
#include <utility>

#include "TQStoreKitLib/TQNetworking/TQResponse.hpp"
#include "platform/Foundation/Data.hpp"
#include "platform/Foundation/JSONDecoder.hpp"
#include "platform/Foundation/JSONValue.hpp"
#include "platform/Foundation/StringEncoding.hpp"

namespace TQStoreKitLib::detail {

/// What all results but the raw bytes have in common: an error is handed on, and no body is
/// `noData`; anything else is up to `convert`, which makes a `TQResponse<T>` from the bytes.
template <class T, class Convert>
[[nodiscard]] TQResponse<T> mapped(const TQResponse<Foundation::Data>& raw,
                                   const Convert& convert) {
  if (raw.error) return {.error = raw.error};
  if (!raw.data) return {.error = TQNWError::noData()};
  return convert(*raw.data);
}

[[nodiscard]] TQResponse<std::string> textFrom(const TQResponse<Foundation::Data>& raw,
                                               Foundation::NSStringEncoding encoding);

[[nodiscard]] TQResponse<Foundation::JSONValue> jsonFrom(const TQResponse<Foundation::Data>& raw);

template <Foundation::CodableType T>
[[nodiscard]] TQResponse<T> objectFrom(const TQResponse<Foundation::Data>& raw,
                                       const Foundation::JSONDecoder& decoder) {
  return mapped<T>(raw, [&decoder](const Foundation::Data& bytes) -> TQResponse<T> {
    auto decoded = decoder.decode<T>(bytes);
    if (decoded.error) return {.error = TQNWError::objectDecodeFailed(*decoded.error)};
    return {.data = std::move(decoded.value)};
  });
}

}  // namespace TQStoreKitLib::detail
