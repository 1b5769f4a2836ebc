#include "TQStoreKitLib/TQNetworking/TQHeaderValue.hpp"

#include <functional>

namespace TQStoreKitLib {

namespace {

void combine(std::size_t& hash, const std::string& part) {
  hash ^= std::hash<std::string>{}(part) + 0x9e3779b9U + (hash << 6U) + (hash >> 2U);
}

}  // namespace

const TQHeaderValue& TQHeaderValue::json() {
  static const auto& value =
      *new TQHeaderValue("application", "json", Parameters{{"charset", "utf-8"}});
  return value;
}

std::string TQHeaderValue::serialize() const {
  auto text = type_ + "/" + subType_;
  for (const auto& [key, value] : parameters_) {
    ((text += "; ") += key).append("=").append(value);
  }
  return text;
}

std::size_t TQHeaderValue::hashValue() const {
  std::size_t hash = 0;
  combine(hash, type_);
  combine(hash, subType_);
  for (const auto& [key, value] : parameters_) {
    combine(hash, key);
    combine(hash, value);
  }
  return hash;
}

}  // namespace TQStoreKitLib
