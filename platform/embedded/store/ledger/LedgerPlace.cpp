#include "platform/embedded/store/ledger/LedgerPlace.hpp"

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace StoreKit {

namespace {

namespace fs = std::filesystem;

std::string environment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

fs::path stateFolder() {
  if (const auto state = environment("XDG_STATE_HOME"); !state.empty()) {
    return fs::path(state) / "tqstore";
  }
  const auto home = environment("HOME");
  return home.empty() ? fs::path() : fs::path(home) / ".local" / "state" / "tqstore";
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
  if (folder.empty()) return ":memory:";
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
