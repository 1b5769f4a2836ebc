#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace StoreKit {

class Catalogue;

/// What the store hosts for a product: a folder of the developer's, in a version.
struct HostedContent {
  std::string folder{};  ///< its whole path; empty when nothing is hosted
  std::string version = "1.0";
};

/// By product identifier.
using HostedContents = std::map<std::string, HostedContent, std::less<>>;

/// Two settings for each product, by name, beside those that `settingNames` lists:
///
///     hostedContent.PRODUCT         the folder; empty: nothing is hosted
///     hostedContentVersion.PRODUCT  integers with points between them; empty: 1.0
[[nodiscard]] bool isHostedContentSetting(std::string_view name);

/// The names of those that are set, in alphabetical order of the products.
[[nodiscard]] std::vector<std::string> hostedContentSettings(const HostedContents& contents);

/// The value as text. `name` is such a setting, here and below.
[[nodiscard]] std::string hostedContentText(const HostedContents& contents, std::string_view name);

/// Sets it; a relative folder is taken from the current one. Answers with what is wrong with the
/// form of `text`; then nothing was changed.
[[nodiscard]] std::optional<std::string> setHostedContent(HostedContents& contents,
                                                          std::string_view name,
                                                          const std::string& text);

/// Why that setting can't be meant: nothing is sold under that identifier, or the folder is none.
[[nodiscard]] std::optional<std::string> hostedContentObjection(const HostedContents& contents,
                                                                std::string_view name,
                                                                const Catalogue& catalogue);

}  // namespace StoreKit
