#include "TQStoreKitLib/utilities/CodableDefaults.hpp"

namespace Foundation::detail {

DefaultsObjectPtr storedData(const UserDefaults& defaults, std::string_view key) {
  auto object = defaults.object(key);
  return object && object->asData() ? object : nullptr;
}

void storeEncoding(UserDefaults& defaults, JSONEncoding encoding, std::string_view key) {
  if (encoding.data) defaults.set(DefaultsObject::data(std::move(*encoding.data)), key);
}

}  // namespace Foundation::detail
