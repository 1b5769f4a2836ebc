#pragma once

#include <cstdint>
#include <string>

namespace StoreKit::detail {

/// Says to other processes that this one is alive: a lock on a small file beside the ledger, which
/// the system lets go of when the process ends, however it ends.
///
/// Each owner has a number of its own, which the ledger hands out, and its purchases carry it.
class OwnerLock {
 public:
  /// Locks the number of this process, and sweeps away the files that dead ones left behind. For a
  /// ledger in memory there is nothing to lock.
  OwnerLock(std::string ledgerPath, std::int64_t owner);
  ~OwnerLock();
  OwnerLock(const OwnerLock&) = delete;
  OwnerLock& operator=(const OwnerLock&) = delete;

  [[nodiscard]] std::int64_t owner() const { return owner_; }

  /// True while the owner with that number lives. The file of one that is dead is removed.
  [[nodiscard]] bool isAlive(std::int64_t owner) const;

 private:
  [[nodiscard]] std::string fileOf(std::int64_t owner) const;
  void lock();
  void sweep() const;

  std::string ledgerPath_;
  std::int64_t owner_;
  int file_ = -1;
};

}  // namespace StoreKit::detail
