#include "platform/Foundation/URLResponse.hpp"

namespace Foundation {

std::optional<std::string> HTTPURLResponse::value(std::string_view forHTTPHeaderField) const {
  const auto entry = fields_.find(forHTTPHeaderField);
  return entry == fields_.end() ? std::nullopt : std::optional<std::string>(entry->second);
}

std::shared_ptr<const HTTPURLResponse> httpResponse(const URLResponsePtr& response) {
  return std::dynamic_pointer_cast<const HTTPURLResponse>(response);
}

}  // namespace Foundation
