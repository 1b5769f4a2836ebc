#include "TQStoreKitLib/TQNetworking/TQHttpHeaderName.hpp"

#include <functional>

namespace TQStoreKitLib {

const TQHttpHeaderName& TQHttpHeaderName::accept() {
  static const auto& name = *new TQHttpHeaderName("Accept");
  return name;
}

const TQHttpHeaderName& TQHttpHeaderName::acceptEncoding() {
  static const auto& name = *new TQHttpHeaderName("Accept-Encoding");
  return name;
}

const TQHttpHeaderName& TQHttpHeaderName::authorization() {
  static const auto& name = *new TQHttpHeaderName("Authorization");
  return name;
}

const TQHttpHeaderName& TQHttpHeaderName::contentEncoding() {
  static const auto& name = *new TQHttpHeaderName("Content-Encoding");
  return name;
}

const TQHttpHeaderName& TQHttpHeaderName::contentLength() {
  static const auto& name = *new TQHttpHeaderName("Content-Length");
  return name;
}

const TQHttpHeaderName& TQHttpHeaderName::contentType() {
  static const auto& name = *new TQHttpHeaderName("Content-Type");
  return name;
}

std::size_t TQHttpHeaderName::hashValue() const { return std::hash<std::string>{}(name_); }

}  // namespace TQStoreKitLib
