#include "platform/embedded/store/ledger/LedgerPlace.hpp"

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "platform/Foundation/Print.hpp"

namespace StoreKit {

namespace {

namespace fs = std::filesystem;

std::string environment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

// Empty where it is not named by its full path: it would be another one in each current folder.
fs::path environmentFolder(const char* name) {
  fs::path folder = environment(name);
  return folder.is_absolute() ? folder : fs::path();
}

fs::path stateFolder() {
  if (const auto state = environmentFolder("XDG_STATE_HOME"); !state.empty()) {
    return state / "tqstore";
  }
  const auto home = environmentFolder("HOME");
  return home.empty() ? fs::path() : home / ".local" / "state" / "tqstore";
}

// FNV-1a: the same number on every machine and in every run, which std::hash does not promise.
std::string fingerprint(const std::string& text) {
  std::uint64_t hash = 0xcbf29ce484222325U;
  for (const char c : text) {
    hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
  }
  std::array<char, 17> digits{};
  std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(hash));
  return digits.data();
}

}  // namespace

std::string ledgerPathFor(const std::string& configurationPath) {
  if (auto named = environment("TQSTORE_LEDGER"); !named.empty()) return named;
  const auto folder = stateFolder();
  if (folder.empty()) {
    Foundation::warn(
        "Neither HOME nor XDG_STATE_HOME names a folder by its full path: the transactions and "
        "settings are in memory, and gone with this program.");
    return ":memory:";
  }
  std::error_code ignored;
  fs::create_directories(folder, ignored);
  return folder / (pathName(configurationPath) + ".ledger");
}

std::string pathName(const std::string& path) {
  std::error_code ignored;
  const auto whole = fs::weakly_canonical(path, ignored);
  return whole.stem().string() + "-" + fingerprint(whole.string());
}

}  // namespace StoreKit
