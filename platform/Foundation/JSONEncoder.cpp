#include "platform/Foundation/JSONEncoder.hpp"

#include <exception>

namespace Foundation::detail {

JSONEncoding encodeGuarded(const void* value, void (*encode)(Encoder& encoder, const void* value)) {
  Encoder encoder;
  try {
    encode(encoder, value);
  } catch (const std::exception& exception) {
    encoder.fail(exception.what());
  } catch (...) {
    encoder.fail("the conversion threw");
  }
  if (!encoder.hasFailed()) return {.data = dataFromText(encoder.json())};
  return {.error = NSError::withDescription(std::string(NSCocoaErrorDomain),
                                            JSONEncoder::kInvalidValue, encoder.failure())};
}

}  // namespace Foundation::detail
