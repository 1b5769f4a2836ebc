#include "platform/embedded/store/downloads/DownloadPlace.hpp"

#include <unistd.h>

#include <charconv>
#include <cstdlib>

#include "platform/embedded/store/ledger/LedgerPlace.hpp"

namespace StoreKit {

namespace {

namespace fs = std::filesystem;

// Empty when the variable is not set, or no whole path: such a one counts as none.
fs::path folderIn(const char* variable) {
  const char* const value = std::getenv(variable);
  const fs::path folder = value == nullptr ? "" : value;
  return folder.is_absolute() ? folder : fs::path();
}

fs::path userCaches() {
  if (const auto caches = folderIn("XDG_CACHE_HOME"); !caches.empty()) return caches / "tqstore";
  if (const auto home = folderIn("HOME"); !home.empty()) return home / ".cache" / "tqstore";
  std::error_code ignored;
  return fs::temp_directory_path(ignored) / "tqstore";
}

std::string nameOf(const std::string& ledger) {
  if (!ledger.empty()) return pathName(ledger);
  static int count = 0;
  return "memory-" + std::to_string(::getpid()) + "-" + std::to_string(++count);
}

// 0, which no transaction has, for a name that is no number.
std::int64_t numberOf(const fs::path& folder) {
  const auto name = folder.filename().string();
  const auto* const end = name.data() + name.size();
  std::int64_t number = 0;
  const auto [stop, error] = std::from_chars(name.data(), end, number);
  return error == std::errc() && stop == end ? number : 0;
}

std::vector<std::int64_t> transactionsIn(const fs::path& folder) {
  std::vector<std::int64_t> numbers;
  std::error_code error;
  for (fs::directory_iterator item(folder, error); !error && item != fs::directory_iterator();
       item.increment(error)) {
    if (const auto number = numberOf(item->path()); number > 0) numbers.push_back(number);
  }
  return numbers;
}

}  // namespace

DownloadPlace::DownloadPlace(const std::string& ledger) : DownloadPlace(ledger, userCaches()) {}

DownloadPlace::DownloadPlace(const std::string& ledger, const fs::path& caches)
    : process_(ledger.empty() ? ::getpid() : 0) {
  std::error_code error;
  const auto whole = fs::absolute(caches, error);
  if (!error) folder_ = whole / "downloads" / nameOf(ledger);
}

fs::path DownloadPlace::folderOf(std::int64_t transaction) const {
  return folder_ / std::to_string(transaction);
}

void DownloadPlace::remove(const std::vector<std::int64_t>& transactions) const {
  std::error_code ignored;
  if (transactions.empty() || folder_.empty() || !fs::exists(folder_, ignored)) return;
  for (const auto transaction : transactions) fs::remove_all(folderOf(transaction), ignored);
  fs::remove(folder_, ignored);  // only when it is empty
}

void DownloadPlace::sweep(const Ledger& ledger) const {
  auto over = transactionsIn(folder_);
  std::erase_if(over, [&](std::int64_t transaction) { return !ledger.isOver(transaction); });
  remove(over);
}

// A child that was forked from the process is another one.
void DownloadPlace::end() const {
  std::error_code ignored;
  if (process_ == ::getpid()) fs::remove_all(folder_, ignored);
}

}  // namespace StoreKit
