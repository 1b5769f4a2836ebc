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

struct ChosenFolder {
  std::mutex mutex;
  std::optional<std::string> path;
};

ChosenFolder& chosen() {
  static auto& instance = *new ChosenFolder;
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
  const std::lock_guard lock(chosen().mutex);
  chosen().path = std::move(path);
}

std::optional<std::string> defaultsFolder() {
  const std::lock_guard lock(chosen().mutex);
  if (chosen().path) return chosen().path;
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
