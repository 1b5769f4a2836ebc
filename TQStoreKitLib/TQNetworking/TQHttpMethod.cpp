#include "TQStoreKitLib/TQNetworking/TQHttpMethod.hpp"

namespace TQStoreKitLib {

std::string_view rawValue(TQHttpMethod method) {
  return method == TQHttpMethod::get ? "GET" : "POST";
}

std::optional<TQHttpMethod> httpMethodFromRawValue(std::string_view text) {
  if (text == "POST") return TQHttpMethod::post;
  if (text == "GET") return TQHttpMethod::get;
  return std::nullopt;
}

}  // namespace TQStoreKitLib
