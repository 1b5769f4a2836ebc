#include "platform/Foundation/JSONDecoder.hpp"

#include <exception>

#include "platform/Foundation/JSONEncoder.hpp"

namespace Foundation::detail {

std::optional<NSError> decodeGuarded(std::string_view json, void* value,
                                     void (*decode)(Decoder& decoder, void* value)) {
  JSONReader reader(json);
  Decoder decoder(reader);
  try {
    decode(decoder, value);
    decoder.finish();
  } catch (const std::exception& exception) {
    decoder.fail(exception.what());
  } catch (...) {
    decoder.fail("the conversion threw");
  }
  if (!decoder.hasFailed()) return std::nullopt;
  return NSError::withDescription(std::string(NSCocoaErrorDomain), JSONDecoder::kCorrupt,
                                  decoder.failure());
}

}  // namespace Foundation::detail
