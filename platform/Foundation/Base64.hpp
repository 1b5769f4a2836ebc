#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Foundation/Data.hpp"

namespace Foundation {

/// The usual base 64 (RFC 4648) with padding and without line breaks.
[[nodiscard]] std::string base64FromData(const Data& data);

/// Absent for anything that `base64FromData` would not write: blanks, line breaks, other
/// characters, missing padding, leftover bits.
[[nodiscard]] std::optional<Data> dataFromBase64(std::string_view text);

}  // namespace Foundation
