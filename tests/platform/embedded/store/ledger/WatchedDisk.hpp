#pragma once

#include <sqlite3.h>

#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace tests {

/// Sees what SQLite asks of the disk: everything goes to the system as ever, after the hook has
/// been told. There is one in a process, from `install` on.
class WatchedDisk {
 public:
  enum class Operation { write, truncate, sync, remove, open };
  /// `log` is true for the write-ahead log. It runs on the thread that SQLite runs on. Openings are
  /// not told.
  using Hook = std::function<void(Operation operation, bool log)>;
  /// What changes nothing yet: a file is opened; a look at a ledger begins, and a change does, which
  /// take a lock of the memory that programs share. Others may still be faster than that change.
  enum class Glance { open, look, change };
  using GlanceHook = std::function<void(Glance glance)>;

  enum class File { database, journal, log, other };
  /// One operation, with everything that a second disk needs to do the same.
  struct Request {
    Operation operation{};
    File file{};
    sqlite3_int64 at = 0;      ///< where a write begins; the size to which a file is cut
    std::string_view bytes{};  ///< of a write; only during the call
    /// The folder is on the disk as well after that: which files there are.
    bool syncsFolder = false;
  };
  using RequestHook = std::function<void(const Request& request)>;

  /// Waits for a hook that is running; the one before does not run any more then. Hooks may use
  /// databases themselves.
  static void install(Hook hook, GlanceHook glanceHook = nullptr) {
    RequestHook all;
    if (hook) {
      all = [told = std::move(hook)](const Request& request) {
        if (request.operation == Operation::open) return;
        told(request.operation, request.file == File::log);
      };
    }
    installForRequests(std::move(all), std::move(glanceHook));
  }

  /// The same, for a hook that wants to know more.
  static void installForRequests(RequestHook hook, GlanceHook glanceHook = nullptr) {
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

  /// From now on nothing waits for the real disk: for tests whose own disk is what counts.
  static void doNotWait() {
    const std::lock_guard lock(mutex_);
    waits_ = false;
  }

 private:
  // The system's methods with three of ours among them; `watched` is what SQLite sees.
  struct Methods {
    sqlite3_io_methods watched;
    const sqlite3_io_methods* original;
    File kind;
  };

  static const Methods& methodsOf(sqlite3_file* file) {
    return *reinterpret_cast<const Methods*>(file->pMethods);
  }
  static int write(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 at) {
    const auto& methods = methodsOf(file);
    tell({.operation = Operation::write,
          .file = methods.kind,
          .at = at,
          .bytes = {static_cast<const char*>(bytes), static_cast<std::size_t>(count)}});
    return methods.original->xWrite(file, bytes, count, at);
  }
  static int truncate(sqlite3_file* file, sqlite3_int64 size) {
    const auto& methods = methodsOf(file);
    tell({.operation = Operation::truncate, .file = methods.kind, .at = size});
    return methods.original->xTruncate(file, size);
  }
  static int sync(sqlite3_file* file, int flags) {
    const auto& methods = methodsOf(file);
    const bool syncsFolder = isFirstSync(file);
    tell({.operation = Operation::sync, .file = methods.kind, .syncsFolder = syncsFolder});
    return waits() ? methods.original->xSync(file, flags) : SQLITE_OK;
  }

  static int lockShared(sqlite3_file* file, int offset, int count, int flags) {
    const bool takes = (flags & SQLITE_SHM_LOCK) != 0;
    const bool alone = (flags & SQLITE_SHM_EXCLUSIVE) != 0;
    if (takes && !alone) tell(Glance::look);
    if (takes && alone && offset == kLockOfWriter) tell(Glance::change);
    return methodsOf(file).original->xShmLock(file, offset, count, flags);
  }

  // The system has several sets of methods, by the kind of file; each gets one of ours.
  static const sqlite3_io_methods* watching(const sqlite3_io_methods* original, File kind) {
    static std::mutex mutex;
    static std::map<std::pair<const sqlite3_io_methods*, File>, Methods> all;
    const std::lock_guard lock(mutex);
    const auto [place, isNew] =
        all.try_emplace({original, kind}, Methods{*original, original, kind});
    auto& methods = place->second.watched;
    if (isNew) {
      methods.xWrite = &write;
      methods.xTruncate = &truncate;
      methods.xSync = &sync;
      methods.xShmLock = &lockShared;
    }
    return &methods;
  }

  static File kindOf(int flags) {
    if ((flags & SQLITE_OPEN_MAIN_DB) != 0) return File::database;
    if ((flags & SQLITE_OPEN_MAIN_JOURNAL) != 0) return File::journal;
    return (flags & SQLITE_OPEN_WAL) != 0 ? File::log : File::other;
  }
  static File kindOf(std::string_view name) {
    if (name.ends_with("-wal")) return File::log;
    return name.ends_with("-journal") ? File::journal : File::database;
  }

  // With the first sync of a journal or a log, the system's files sync their folder.
  static bool isFirstSync(sqlite3_file* file) {
    const std::lock_guard lock(mutex_);
    return neverSynced_.erase(file) > 0;
  }

  static bool waits() {
    const std::lock_guard lock(mutex_);
    return waits_;
  }
  static void tell(const Request& request) {
    const std::lock_guard lock(mutex_);
    if (hook_) hook_(request);
  }
  static void tell(Glance glance) {
    const std::lock_guard lock(mutex_);
    if (glanceHook_) glanceHook_(glance);
  }

  static int open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
    tell(Glance::open);
    const int status = system_->xOpen(system_, name, file, flags, outFlags);
    if (status != SQLITE_OK) return status;
    const auto kind = kindOf(flags);
    file->pMethods = watching(file->pMethods, kind);
    noteOpened(file, kind);
    tell({.operation = Operation::open, .file = kind});
    return status;
  }
  static void noteOpened(sqlite3_file* file, File kind) {
    const std::lock_guard lock(mutex_);
    neverSynced_.erase(file);
    if (kind == File::journal || kind == File::log) neverSynced_.insert(file);
  }

  static int remove(sqlite3_vfs*, const char* name, int syncFolder) {
    const bool syncs = syncFolder != 0;
    tell({.operation = Operation::remove, .file = kindOf(name), .syncsFolder = syncs});
    return system_->xDelete(system_, name, syncs && waits() ? 1 : 0);
  }

  // By SQLite's published format of that memory.
  static constexpr int kLockOfWriter = 0;

  static inline std::recursive_mutex mutex_;
  static inline RequestHook hook_;
  static inline GlanceHook glanceHook_;
  static inline bool waits_ = true;
  static inline std::set<const sqlite3_file*> neverSynced_;
  static inline sqlite3_vfs* system_ = nullptr;
  static inline sqlite3_vfs ours_{};
};

}  // namespace tests
