#pragma once

#include <optional>
#include <string_view>

namespace TQStoreKitLib {

/// What a request does.
enum class TQHttpMethod { post, get };

/// "POST" or "GET".
[[nodiscard]] std::string_view rawValue(TQHttpMethod method);

/// The method of exactly that text; absent for any other, "get" too.
[[nodiscard]] std::optional<TQHttpMethod> httpMethodFromRawValue(std::string_view text);

}  // namespace TQStoreKitLib
