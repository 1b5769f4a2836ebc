#include "platform/embedded/store/downloads/HostedContent.hpp"

#include <algorithm>
#include <filesystem>

#include "platform/embedded/store/Catalogue.hpp"

namespace StoreKit {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kFolderPrefix = "hostedContent.";
constexpr std::string_view kVersionPrefix = "hostedContentVersion.";

bool isFolderSetting(std::string_view name) {
  return name.starts_with(kFolderPrefix) && name.size() > kFolderPrefix.size();
}

bool isVersionSetting(std::string_view name) {
  return name.starts_with(kVersionPrefix) && name.size() > kVersionPrefix.size();
}

std::string productOf(std::string_view name) {
  return std::string(name.substr(name.find('.') + 1));
}

HostedContent contentOf(const HostedContents& contents, std::string_view name) {
  const auto found = contents.find(productOf(name));
  return found == contents.end() ? HostedContent() : found->second;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isVersion(std::string_view text) {
  char before = '.';
  for (const char c : text) {
    const bool separates = c == '.' && before != '.';
    if (!isDigit(c) && !separates) return false;
    before = c;
  }
  return before != '.';
}

// In its shortest form, unless that is another folder: behind a symbolic link, ".." is not the way
// back.
std::string wholePath(const std::string& folder) {
  if (folder.empty()) return folder;
  std::error_code error;
  const auto whole = fs::absolute(folder, error);
  auto path = whole.lexically_normal();
  if (!path.has_filename() && path.has_relative_path()) path = path.parent_path();
  const bool isAnother = fs::exists(whole, error) && !fs::equivalent(whole, path, error);
  return (isAnother ? whole : path).string();
}

void keep(HostedContents& contents, std::string_view name, const HostedContent& content) {
  contents.erase(productOf(name));
  const bool says = !content.folder.empty() || content.version != HostedContent().version;
  if (says) contents.emplace(productOf(name), content);
}

}  // namespace

bool isHostedContentSetting(std::string_view name) {
  return isFolderSetting(name) || isVersionSetting(name);
}

std::vector<std::string> hostedContentSettings(const HostedContents& contents) {
  std::vector<std::string> names;
  for (const auto& [product, content] : contents) {
    if (!content.folder.empty()) names.push_back(std::string(kFolderPrefix) + product);
    if (content.version == HostedContent().version) continue;
    names.push_back(std::string(kVersionPrefix) + product);
  }
  return names;
}

std::string hostedContentText(const HostedContents& contents, std::string_view name) {
  const auto content = contentOf(contents, name);
  return isFolderSetting(name) ? content.folder : content.version;
}

std::optional<std::string> setHostedContent(HostedContents& contents, std::string_view name,
                                            const std::string& text) {
  auto content = contentOf(contents, name);
  if (isFolderSetting(name)) {
    content.folder = wholePath(text);
  } else if (text.empty() || isVersion(text)) {
    content.version = text.empty() ? HostedContent().version : text;
  } else {
    return "is integers with points between them, such as 1.0";
  }
  keep(contents, name, content);
  return std::nullopt;
}

std::optional<std::string> hostedContentObjection(const HostedContents& contents,
                                                  std::string_view name,
                                                  const Catalogue& catalogue) {
  const auto text = hostedContentText(contents, name);
  if (text == hostedContentText({}, name)) return std::nullopt;  // taken back
  const auto product = productOf(name);
  if (catalogue.find(product) == nullptr) {
    return std::string(name) + " cannot be: nothing is sold as " + product;
  }
  std::error_code error;
  if (!isFolderSetting(name) || fs::is_directory(text, error)) return std::nullopt;
  return std::string(name) + " is a folder, not \"" + text + "\"";
}

}  // namespace StoreKit
