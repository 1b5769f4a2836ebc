#include "TQStoreKitLib/TQNetworking/ResponseMapping.hpp"

#include "platform/Foundation/JSONSerialization.hpp"

namespace TQStoreKitLib::detail {

using Foundation::Data;
using Foundation::JSONValue;

TQResponse<std::string> textFrom(const TQResponse<Data>& raw,
                                 Foundation::NSStringEncoding encoding) {
  using Response = TQResponse<std::string>;
  return mapped<std::string>(raw, [encoding](const Data& bytes) -> Response {
    auto text = Foundation::decodeText(bytes, encoding);
    if (!text) return {.error = TQNWError::stringEncodingFailed(encoding)};
    return {.data = std::move(text)};
  });
}

TQResponse<JSONValue> jsonFrom(const TQResponse<Data>& raw) {
  using Response = TQResponse<JSONValue>;
  return mapped<JSONValue>(raw, [](const Data& bytes) -> Response {
    auto json = Foundation::JSONSerialization::jsonObject(bytes);
    if (json.error) return {.error = TQNWError::jsonDecodeFailed(*json.error)};
    return {.data = std::move(json.value)};
  });
}

}  // namespace TQStoreKitLib::detail
