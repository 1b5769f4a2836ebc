#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/embedded/store/StoreConfiguration.hpp"

namespace StoreKit {

/// The store's settings by name, as text: for the ledger, which keeps what was set in place of the
/// configuration's values, and for tools. The names are those of the session's properties; beside
/// them there are those of hosted content, two for each product (`downloads/HostedContent.hpp`).

/// The shortest text that is read as exactly this number.
[[nodiscard]] std::string secondsText(double seconds);

/// All names, in alphabetical order, without those of hosted content.
[[nodiscard]] std::vector<std::string_view> settingNames();

/// The value as text: "true", "USA", "13"; absent for a name that is no setting.
[[nodiscard]] std::optional<std::string> settingText(const StoreConfiguration::Settings& settings,
                                                     std::string_view name);

/// Sets the one with that name. Answers with what is wrong, in words; then nothing was changed.
[[nodiscard]] std::optional<std::string> setSetting(StoreConfiguration::Settings& settings,
                                                    std::string_view name, const std::string& text);

}  // namespace StoreKit
