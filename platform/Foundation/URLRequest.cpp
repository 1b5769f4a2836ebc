#include "platform/Foundation/URLRequest.hpp"

namespace Foundation {

void URLRequest::setValue(std::optional<std::string> value, std::string_view forHTTPHeaderField) {
  // The name may be a view into the very entry that is replaced.
  std::string name(forHTTPHeaderField);
  const auto entry = fields_.find(name);
  if (entry != fields_.end()) fields_.erase(entry);
  if (value) fields_.emplace(std::move(name), *std::move(value));
}

std::optional<std::string> URLRequest::value(std::string_view forHTTPHeaderField) const {
  const auto entry = fields_.find(forHTTPHeaderField);
  return entry == fields_.end() ? std::nullopt : std::optional<std::string>(entry->second);
}

}  // namespace Foundation
