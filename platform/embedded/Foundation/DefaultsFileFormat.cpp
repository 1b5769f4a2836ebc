#include "platform/embedded/Foundation/DefaultsFileFormat.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string_view>

#include "platform/embedded/sqlite/FirstBytes.hpp"
#include "platform/embedded/sqlite/SqliteDatabase.hpp"

namespace Foundation {

namespace {

namespace fs = std::filesystem;

// "TQDF". This number, the version, and the table are on people's disks and must not change.
constexpr std::uint32_t kApplicationId = 0x54514446;
constexpr std::uint32_t kVersion = 1;
constexpr const char* kSchema =
    "PRAGMA application_id = 1414612038;"
    "PRAGMA user_version = 1;"
    "CREATE TABLE defaults (key TEXT PRIMARY KEY NOT NULL, kind TEXT NOT NULL, value)"
    " WITHOUT ROWID;"
    "PRAGMA journal_mode = WAL";
static_assert(kApplicationId == 1414612038);

// Where SQLite's file format has its fields: see "The Database Header" in its documentation.
constexpr std::string_view kMagic{"SQLite format 3\0", 16};
constexpr std::size_t kVersionAt = 60;
constexpr std::size_t kApplicationIdAt = 68;
constexpr std::size_t kHeaderSize = 100;

std::uint32_t bigEndian(const char* bytes) {
  std::uint32_t value = 0;
  for (int i = 0; i < 4; ++i) value = value << 8U | static_cast<unsigned char>(bytes[i]);
  return value;
}

// A rename is on the disk when its folder is.
void flushFolder(const fs::path& folder) {
  const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;
  ::fsync(descriptor);
  ::close(descriptor);
}

std::string makeEmpty(const std::string& path) {
  try {
    detail::SqliteDatabase(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE).execute(kSchema);
    return "";
  } catch (const detail::SqliteError& error) {
    return std::string("can't be made: ") + error.what();
  }
}

}  // namespace

std::string makeDefaultsFile(const std::string& path) {
  std::error_code error;
  if (fs::exists(fs::symlink_status(path, error))) return "";
  const auto folder = fs::path(path).parent_path();
  fs::create_directories(folder, error);
  if (error) return "its folder can't be made: " + error.message();
  const auto fresh = path + "." + std::to_string(::getpid()) + ".new";
  fs::remove(fresh, error);
  auto problem = makeEmpty(fresh);
  // A link, unlike a rename, does not replace what another process has made meanwhile.
  if (problem.empty() && ::link(fresh.c_str(), path.c_str()) != 0 && errno != EEXIST) {
    problem = std::string("can't be made: ") + std::strerror(errno);
  }
  fs::remove(fresh, error);
  flushFolder(folder);
  return problem;
}

std::string defaultsHeaderProblem(const std::string& path) {
  if (::access(path.c_str(), R_OK) != 0) {
    return std::string("can't be opened: ") + std::strerror(errno);
  }
  std::string header;
  try {
    header = detail::firstBytes(path, kHeaderSize);
  } catch (const detail::SqliteError& error) {
    return std::string("can't be opened: ") + error.what();
  }
  if (header.size() < kHeaderSize || !header.starts_with(kMagic) ||
      bigEndian(&header[kApplicationIdAt]) != kApplicationId) {
    return "is no file of user defaults";
  }
  if (bigEndian(&header[kVersionAt]) != kVersion) return "was written by a newer version";
  return "";
}

}  // namespace Foundation
