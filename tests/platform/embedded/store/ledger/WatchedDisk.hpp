#pragma once

#include <sqlite3.h>

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>

namespace tests {

/// Sees what SQLite asks of the disk: everything goes to the system as ever, after the hook has
/// been told. There is one in a process, from `install` on.
class WatchedDisk {
 public:
  enum class Operation { write, truncate, sync, remove };
  /// `log` is true for the write-ahead log. It runs on the thread that SQLite runs on.
  using Hook = std::function<void(Operation operation, bool log)>;
  /// What changes nothing yet: a file is opened; a look at a ledger begins, and a change does, which
  /// take a lock of the memory that programs share. Others may still be faster than that change.
  enum class Glance { open, look, change };
  using GlanceHook = std::function<void(Glance glance)>;

  /// Waits for a hook that is running; the one before does not run any more then. Hooks may use
  /// databases themselves.
  static void install(Hook hook, GlanceHook glanceHook = nullptr) {
    const std::lock_guard lock(mutex_);
    hook_ = std::move(hook);
    glanceHook_ = std::move(glanceHook);
    if (system_ != nullptr) return;
    system_ = sqlite3_vfs_find(nullptr);
    ours_ = *system_;
    ours_.zName = "watched";
    ours_.xOpen = &open;
    ours_.xDelete = &remove;
    sqlite3_vfs_register(&ours_, 1);
  }

 private:
  // The system's methods with three of ours among them; `watched` is what SQLite sees.
  struct Methods {
    sqlite3_io_methods watched;
    const sqlite3_io_methods* original;
    bool log;
  };

  static const Methods& methodsOf(sqlite3_file* file) {
    return *reinterpret_cast<const Methods*>(file->pMethods);
  }
  static int write(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 at) {
    tell(Operation::write, methodsOf(file).log);
    return methodsOf(file).original->xWrite(file, bytes, count, at);
  }
  static int truncate(sqlite3_file* file, sqlite3_int64 size) {
    tell(Operation::truncate, methodsOf(file).log);
    return methodsOf(file).original->xTruncate(file, size);
  }
  static int sync(sqlite3_file* file, int flags) {
    tell(Operation::sync, methodsOf(file).log);
    return methodsOf(file).original->xSync(file, flags);
  }

  static int lockShared(sqlite3_file* file, int offset, int count, int flags) {
    const bool takes = (flags & SQLITE_SHM_LOCK) != 0;
    const bool alone = (flags & SQLITE_SHM_EXCLUSIVE) != 0;
    if (takes && !alone) tell(Glance::look);
    if (takes && alone && offset == kLockOfWriter) tell(Glance::change);
    return methodsOf(file).original->xShmLock(file, offset, count, flags);
  }

  // The system has several sets of methods, by the kind of file; each gets one of ours.
  static const sqlite3_io_methods* watching(const sqlite3_io_methods* original, bool log) {
    static std::mutex mutex;
    static std::map<std::pair<const sqlite3_io_methods*, bool>, Methods> all;
    const std::lock_guard lock(mutex);
    const auto [place, isNew] = all.try_emplace({original, log}, Methods{*original, original, log});
    auto& methods = place->second.watched;
    if (isNew) {
      methods.xWrite = &write;
      methods.xTruncate = &truncate;
      methods.xSync = &sync;
      methods.xShmLock = &lockShared;
    }
    return &methods;
  }

  static void tell(Operation operation, bool log) {
    const std::lock_guard lock(mutex_);
    if (hook_) hook_(operation, log);
  }
  static void tell(Glance glance) {
    const std::lock_guard lock(mutex_);
    if (glanceHook_) glanceHook_(glance);
  }

  static int open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
    tell(Glance::open);
    const int status = system_->xOpen(system_, name, file, flags, outFlags);
    if (status != SQLITE_OK) return status;
    file->pMethods = watching(file->pMethods, (flags & SQLITE_OPEN_WAL) != 0);
    return status;
  }

  static int remove(sqlite3_vfs*, const char* name, int syncFolder) {
    tell(Operation::remove, std::string(name).ends_with("-wal"));
    return system_->xDelete(system_, name, syncFolder);
  }

  // By SQLite's published format of that memory.
  static constexpr int kLockOfWriter = 0;

  static inline std::recursive_mutex mutex_;
  static inline Hook hook_;
  static inline GlanceHook glanceHook_;
  static inline sqlite3_vfs* system_ = nullptr;
  static inline sqlite3_vfs ours_{};
};

}  // namespace tests
