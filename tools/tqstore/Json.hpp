#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "platform/embedded/store/Catalogue.hpp"

namespace tqstore {

/// JSON objects keep their fields in the order in which they are written here.
/// Who makes one includes <nlohmann/json.hpp>.
using Json = nlohmann::ordered_json;

/// JSON on one line. Text that is not UTF-8 is replaced, never an error.
[[nodiscard]] std::string asLine(const Json& value);

/// The same, on standard output.
void writeJson(const Json& value);

[[nodiscard]] Json toJson(const StoreKit::CatalogueEntry& entry);

/// The words of a configuration's types for a person and a program alike: "Consumable" and so on.
[[nodiscard]] std::string unitName(StoreKit::SKProductPeriodUnit unit);

}  // namespace tqstore
