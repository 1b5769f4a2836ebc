#include "platform/embedded/Foundation/DefaultsFolder.hpp"

#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <utility>

#ifndef __APPLE__
#include <cerrno>
#endif

namespace Foundation {

namespace {

namespace fs = std::filesystem;

struct DefaultsFolderChoice {
  std::mutex mutex;
  std::optional<std::string> path;
};

DefaultsFolderChoice& defaultsFolderChoice() {
  static auto& instance = *new DefaultsFolderChoice;
  return instance;
}

// Absent when the variable is not set or empty.
std::optional<std::string> variable(const char* name) {
  const char* const value = std::getenv(name);
  if (value == nullptr || *value == '\0') return std::nullopt;
  return value;
}

// A relative folder in XDG_CONFIG_HOME counts as none.
std::optional<fs::path> configurationFolder() {
  const auto folder = variable("XDG_CONFIG_HOME");
  if (folder && fs::path(*folder).is_absolute()) return *folder;
  if (const auto home = variable("HOME")) return fs::path(*home) / ".config";
  return std::nullopt;
}

}  // namespace

void setDefaultsFolder(std::optional<std::string> path) {
  const std::lock_guard lock(defaultsFolderChoice().mutex);
  defaultsFolderChoice().path = std::move(path);
}

std::optional<std::string> defaultsFolder() {
  const std::lock_guard lock(defaultsFolderChoice().mutex);
  if (defaultsFolderChoice().path) return defaultsFolderChoice().path;
  if (auto named = variable("TQSTORE_DEFAULTS")) return named;
  const auto folder = configurationFolder();
  if (!folder) return std::nullopt;
  return (*folder / "TQStoreKitLib").string();
}

std::string programName() {
#ifdef __APPLE__
  return ::getprogname();
#else
  return ::program_invocation_short_name;
#endif
}

}  // namespace Foundation
