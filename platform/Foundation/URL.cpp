#include "platform/Foundation/URL.hpp"

#include <unistd.h>

#include <algorithm>
#include <array>

#include "platform/Foundation/URLSyntax.hpp"

namespace Foundation {

namespace {

using detail::partsOf;

constexpr std::string_view kFileScheme = "file";

std::string_view withoutSlashesAtEnd(std::string_view path) {
  while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
  return path;
}

// What stands behind the last slash, still encoded; all of a path without one.
std::string_view lastComponent(std::string_view path) {
  const auto trimmed = withoutSlashesAtEnd(path);
  return trimmed == "/" ? trimmed : trimmed.substr(trimmed.rfind('/') + 1);
}

// The folder that a path leads through last. The last step of "a/.." is one up: so is the answer's.
std::string withoutLastComponent(std::string_view path) {
  const auto last = lastComponent(path);
  if (last.empty() || last == "/") return std::string(path);
  const auto trimmed = withoutSlashesAtEnd(path);
  if (last == "." || last == "..") return std::string(trimmed) + "/../";
  const auto folder = trimmed.substr(0, trimmed.size() - last.size());
  return folder.empty() ? "./" : std::string(folder);
}

// Empty when there is none, which is so when it was removed.
std::string currentFolder() {
  std::array<char, 4096> path{};
  return ::getcwd(path.data(), path.size()) == nullptr ? "" : path.data();
}

std::string absolutePath(std::string_view path) {
  if (path.starts_with('/')) return std::string(path);
  return currentFolder().append("/").append(path);
}

bool isSameLetter(char a, char lower) { return a == lower || a == lower - 'a' + 'A'; }

}  // namespace

std::optional<URL> URL::withString(std::string_view text) {
  if (!detail::isURL(text)) return std::nullopt;
  return URL(std::string(text));
}

URL URL::fileURLWithPath(std::string_view path) {
  return URL("file://" + detail::percentEncodedPath(absolutePath(path)));
}

std::optional<std::string> URL::scheme() const {
  const auto parts = partsOf(text_);
  return parts.scheme ? std::optional<std::string>(*parts.scheme) : std::nullopt;
}

std::optional<std::string> URL::host() const {
  const auto parts = partsOf(text_);
  if (!parts.authority) return std::nullopt;
  auto host = detail::hostIn(*parts.authority);
  return host.empty() ? std::nullopt : std::optional<std::string>(std::move(host));
}

std::string URL::path() const {
  return detail::percentDecoded(withoutSlashesAtEnd(partsOf(text_).path));
}

bool URL::isFileURL() const {
  const auto scheme = partsOf(text_).scheme;
  return scheme && std::equal(scheme->begin(), scheme->end(), kFileScheme.begin(),
                              kFileScheme.end(), isSameLetter);
}

std::string URL::lastPathComponent() const {
  return detail::percentDecoded(lastComponent(partsOf(text_).path));
}

URL URL::deletingLastPathComponent() const {
  const auto parts = partsOf(text_);
  return URL(std::string(parts.head) + withoutLastComponent(parts.path) + std::string(parts.tail));
}

URL URL::appendingPathComponent(std::string_view component) const {
  while (component.starts_with('/')) component.remove_prefix(1);
  const auto parts = partsOf(text_);
  const bool needsSlash =
      parts.path.empty() ? parts.authority.has_value() : !parts.path.ends_with('/');
  auto text = std::string(parts.head) + std::string(parts.path) + (needsSlash ? "/" : "");
  text.append(detail::percentEncodedPath(component)).append(parts.tail);
  return URL(std::move(text));
}

}  // namespace Foundation
