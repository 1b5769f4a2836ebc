#include "TQStoreKitLib/TQNetworking/TQNWError.hpp"

namespace TQStoreKitLib {

std::string TQNWError::message() const {
  return match(
      [](const StringEncodingFailed& failed) {
        return "String encoding failed: " + Foundation::localizedName(failed.encoding);
      },
      [](const JsonDecodeFailed& failed) { return failed.error.localizedDescription(); },
      [](const ObjectDecodeFailed& failed) { return failed.error.localizedDescription(); },
      [](const Common& common) { return common.error.localizedDescription(); },
      [](const NoData&) { return std::string("No Data"); },
      [](const Unknow&) { return std::string("Unknow"); });
}

std::optional<TQNWError> tqnwError(const std::optional<Foundation::NSError>& error) {
  return error ? std::optional<TQNWError>(TQNWError::common(*error)) : std::nullopt;
}

}  // namespace TQStoreKitLib
