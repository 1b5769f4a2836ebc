#include "TQStoreKitLib/TQNetworking/TQHttpHeaders.hpp"

namespace TQStoreKitLib {

TQHttpHeaders::TQHttpHeaders(const std::vector<TQHttpHeader>& list) {
  for (const auto& header : list) add(header);
}

TQHttpHeaders::TQHttpHeaders(std::initializer_list<TQHttpHeader> list) {
  for (const auto& header : list) add(header);
}

std::optional<std::string> TQHttpHeaders::operator[](const TQHttpHeaderName& name) const {
  const auto entry = headers.find(name);
  return entry == headers.end() ? std::nullopt : std::optional<std::string>(entry->second);
}

void TQHttpHeaders::add(const TQHttpHeader& header) {
  headers.insert_or_assign(header.name(), header.value());
}

void TQHttpHeaders::remove(const TQHttpHeaderName& name) { headers.erase(name); }

}  // namespace TQStoreKitLib
