#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/embedded/store/Ledger.hpp"

namespace StoreKit {

/// Where the downloads of one ledger's transactions arrive: a folder of the ledger in the user's
/// caches ($XDG_CACHE_HOME/tqstore, else ~/.cache/tqstore, else tqstore in the system's temporary
/// folder), and in it one for each transaction. All programs on the ledger share it.
class DownloadPlace {
 public:
  /// Nowhere yet.
  DownloadPlace() = default;

  /// For the ledger file `ledger`; when it is empty, for a ledger that ends with this process.
  explicit DownloadPlace(const std::string& ledger);

  /// The same, with `caches` in place of the user's.
  DownloadPlace(const std::string& ledger, const std::filesystem::path& caches);

  /// Where the content of that transaction arrives; it need not be there yet.
  [[nodiscard]] std::filesystem::path folderOf(std::int64_t transaction) const;

  /// Removes what was downloaded for these transactions, by whichever program.
  void remove(const std::vector<std::int64_t>& transactions) const;

  /// The same for each that is finished, or that the ledger does not have any more.
  void sweep(const Ledger& ledger) const;

  /// Removes everything, when the ledger has ended.
  void end() const;

 private:
  std::filesystem::path folder_{};
  int process_ = 0;  // that the ledger ends with; 0 for none
};

}  // namespace StoreKit
