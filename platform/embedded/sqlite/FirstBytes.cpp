#include "platform/embedded/sqlite/FirstBytes.hpp"

#include <algorithm>
#include <cstdint>
#include <filesystem>

#include "platform/embedded/sqlite/SqliteDatabase.hpp"

namespace Foundation::detail {

std::string firstBytes(const std::string& path, std::size_t count) {
  const SqliteDatabase database(path, SQLITE_OPEN_READONLY);
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);  // SQLite takes one byte for none
  if (error) database.fail("cannot be read", SQLITE_IOERR, error.message());
  std::string bytes(std::min<std::uintmax_t>(count, size), '\0');
  if (bytes.empty()) return bytes;
  sqlite3_file* file = nullptr;
  sqlite3_file_control(database.handle(), "main", SQLITE_FCNTL_FILE_POINTER,
                       static_cast<void*>(&file));
  const int status = file->pMethods->xRead(file, bytes.data(), static_cast<int>(bytes.size()), 0);
  if (status != SQLITE_OK) database.fail("cannot be read", status, sqlite3_errstr(status));
  return bytes;
}

}  // namespace Foundation::detail
