#include "TQStoreKitLib/TQNetworking/ResponseMapping.hpp"

#include "platform/Foundation/JSONSerialization.hpp"

namespace TQStoreKitLib::detail {

TQResponse<std::string> textFrom(const TQResponse<Foundation::Data>& raw,
                                 Foundation::NSStringEncoding encoding) {
  return mapped<std::string>(raw,
                             [encoding](const Foundation::Data& bytes) -> TQResponse<std::string> {
                               auto text = Foundation::decodeText(bytes, encoding);
                               if (!text)
                                 return {.error = TQNWError::stringEncodingFailed(encoding)};
                               return {.data = std::move(text)};
                             });
}

TQResponse<Foundation::JSONValue> jsonFrom(const TQResponse<Foundation::Data>& raw) {
  using Response = TQResponse<Foundation::JSONValue>;
  return mapped<Foundation::JSONValue>(raw, [](const Foundation::Data& bytes) -> Response {
    auto json = Foundation::JSONSerialization::jsonObject(bytes);
    if (json.error) return {.error = TQNWError::jsonDecodeFailed(*json.error)};
    return {.data = std::move(json.value)};
  });
}

}  // namespace TQStoreKitLib::detail
