#include "platform/embedded/store/ledger/LedgerFile.hpp"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <optional>

#include "platform/embedded/sqlite/FirstBytes.hpp"

namespace StoreKit::detail {

namespace {

using Foundation::detail::SqliteDatabase;
using Foundation::detail::SqliteError;
using Foundation::detail::SqliteStatement;
using Foundation::detail::SqliteStatements;
using Foundation::detail::SqliteTransaction;

// The header of a SQLite file, by its published format: numbers are big-endian.
constexpr std::size_t kFileHeaderSize = 100;
constexpr std::size_t kPageSizeAt = 16;
constexpr std::size_t kPageCountAt = 28;
constexpr std::size_t kUserVersionAt = 60;
constexpr std::size_t kApplicationIdAt = 68;
constexpr char kMagic[] = "SQLite format 3";  // with its NUL

// Version 1, and then what each later version changes. A new file goes the whole way.
constexpr const char* kTables = R"(
CREATE TABLE entry(
  identifier INTEGER PRIMARY KEY AUTOINCREMENT,
  revision INTEGER NOT NULL,
  state INTEGER NOT NULL,
  finished INTEGER NOT NULL,
  owner INTEGER,
  product TEXT NOT NULL,
  quantity INTEGER NOT NULL,
  request_data BLOB,
  username TEXT,
  asks_to_buy INTEGER NOT NULL,
  discount TEXT,
  transaction_identifier TEXT,
  transaction_date REAL,
  error TEXT,
  original INTEGER);
CREATE INDEX unfinished ON entry(identifier) WHERE finished = 0;
CREATE INDEX purchases ON entry(identifier) WHERE finished = 1 AND state = 1;
CREATE INDEX revisions ON entry(revision);
CREATE TABLE counter(name TEXT PRIMARY KEY, value INTEGER NOT NULL) WITHOUT ROWID;
INSERT INTO counter VALUES('revision', 0), ('owner', 0);
)";
constexpr const char* kUpgrades[] = {
    R"(
ALTER TABLE entry ADD COLUMN cancel_date REAL;
ALTER TABLE entry ADD COLUMN refund_revision INTEGER;
ALTER TABLE entry ADD COLUMN issue INTEGER NOT NULL DEFAULT 0;
ALTER TABLE entry ADD COLUMN asks_application INTEGER NOT NULL DEFAULT 0;
ALTER TABLE entry ADD COLUMN deleted INTEGER NOT NULL DEFAULT 0;
ALTER TABLE entry ADD COLUMN subscription_group TEXT;
ALTER TABLE entry ADD COLUMN running INTEGER NOT NULL DEFAULT 0;
ALTER TABLE entry ADD COLUMN period TEXT;
CREATE INDEX periods ON entry(subscription_group) WHERE subscription_group IS NOT NULL;
CREATE INDEX running ON entry(identifier) WHERE running = 1;
CREATE INDEX refunds ON entry(refund_revision) WHERE refund_revision IS NOT NULL;
CREATE TABLE setting(name TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID;
INSERT INTO counter VALUES('settings', 0), ('told_refunds', 0);
)",
    R"(
DELETE FROM counter WHERE name = 'revision';
INSERT INTO counter VALUES('log', 0);
ALTER TABLE counter RENAME TO counters;  -- what a program of version 2 writes from now on, fails
DROP INDEX purchases;
)"};
static_assert(std::size(kUpgrades) + 1 == kLedgerVersion);

// A commit writes whole pages, and most of its entries are short. Only a new file takes it.
constexpr const char* kPageSize = "PRAGMA page_size = 1024";

[[noreturn]] void refuse(const std::string& path, const std::string& reason) {
  throw SqliteError(SQLITE_NOTADB, path + ": " + reason);
}

[[noreturn]] void refuseVersion(const std::string& path, std::int64_t version) {
  refuse(path, "is a ledger of version " + std::to_string(version) +
                   ", written by a newer program; this one reads up to version " +
                   std::to_string(kLedgerVersion));
}

using Header = std::array<unsigned char, kFileHeaderSize>;

std::uint32_t numberAt(const Header& header, std::size_t at) {
  return std::uint32_t{header[at]} << 24U | std::uint32_t{header[at + 1]} << 16U |
         std::uint32_t{header[at + 2]} << 8U | std::uint32_t{header[at + 3]};
}

std::uint64_t pageSizeOf(const Header& header) {
  const auto size = std::uint64_t{header[kPageSizeAt]} << 8U | header[kPageSizeAt + 1];
  return size == 1 ? 65536 : size;
}

// Absent for a file that is missing or empty.
std::optional<Header> readHeader(const std::string& path) {
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  if (!std::filesystem::exists(status)) return std::nullopt;
  if (!std::filesystem::is_regular_file(status)) refuse(path, "is not a file");
  if (::access(path.c_str(), R_OK) != 0) refuse(path, std::strerror(errno));
  const auto bytes = Foundation::detail::firstBytes(path, kFileHeaderSize);
  if (bytes.empty()) return std::nullopt;
  if (bytes.size() < kFileHeaderSize) refuse(path, "is not a ledger");
  Header header{};
  std::memcpy(header.data(), bytes.data(), kFileHeaderSize);
  return header;
}

void check(const std::string& path, const Header& header) {
  const bool ours = std::memcmp(header.data(), kMagic, sizeof kMagic) == 0 &&
                    numberAt(header, kApplicationIdAt) == kLedgerApplicationId;
  if (!ours) refuse(path, "is not a ledger");
  const auto version = numberAt(header, kUserVersionAt);
  if (version > kLedgerVersion) refuseVersion(path, version);
}

// Without its first page, which says what it is, a power cut leaves a file that was being made; its
// journal then takes back all of it. By SQLite's published format, a journal tells how many pages
// there were before: none.
bool wasBeingMade(const std::string& path, const Header& header) {
  constexpr std::size_t kPagesBeforeAt = 16;
  const bool isEmpty =
      std::all_of(header.begin(), header.end(), [](auto each) { return each == 0; });
  std::error_code error;
  if (!isEmpty || !std::filesystem::exists(path + "-journal", error)) return false;
  const auto journal = readHeader(path + "-journal");
  return journal && numberAt(*journal, kPagesBeforeAt) == 0;
}

// A log or a journal beside the file may hold what the file has not got yet: somebody is writing,
// or was killed doing so.
bool hasLog(const std::string& path) {
  std::error_code error;
  return std::filesystem::exists(path + "-wal", error) ||
         std::filesystem::exists(path + "-journal", error);
}

void checkWhole(const std::string& path) {
  if (hasLog(path)) return;
  const auto header = readHeader(path);  // once more: a writer may just have ended
  if (!header) return;
  const auto expected = pageSizeOf(*header) * numberAt(*header, kPageCountAt);
  const auto size = std::filesystem::file_size(path);
  if (size < expected) {
    refuse(path, "was cut short: it has " + std::to_string(size) + " of " +
                     std::to_string(expected) + " bytes");
  }
}

bool hasTables(SqliteDatabase& database) {
  SqliteStatement version(database, "PRAGMA application_id");
  return version.next() && version.integer(0) == kLedgerApplicationId;
}

std::int64_t version(SqliteDatabase& database) {
  SqliteStatement statement(database, "PRAGMA user_version");
  return statement.next() ? statement.integer(0) : 0;
}

// An upgrade may still be in the log, where the header does not tell. Closing leaves it there.
void checkVersion(SqliteDatabase& database, const std::string& path) {
  const auto found = version(database);
  if (found <= kLedgerVersion) return;
  sqlite3_db_config(database.handle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
  refuseVersion(path, found);
}

bool isUpToDate(SqliteDatabase& database) {
  return hasTables(database) && version(database) == kLedgerVersion;
}

// A new file is still in rollback mode here, so that its header says what it is from the first
// moment. Of several processes at once, one makes the tables.
void makeTables(SqliteDatabase& database) {
  if (isUpToDate(database)) return;
  database.execute(kPageSize);
  SqliteStatements statements(database);
  SqliteTransaction transaction(statements);
  if (isUpToDate(database)) return;
  if (!hasTables(database)) {
    database.execute(kTables);
    database.execute(("PRAGMA application_id = " + std::to_string(kLedgerApplicationId)).c_str());
    database.execute("PRAGMA user_version = 1");
  }
  for (auto next = version(database); next < kLedgerVersion; ++next) {
    database.execute(kUpgrades[next - 1]);
  }
  database.execute(("PRAGMA user_version = " + std::to_string(kLedgerVersion)).c_str());
  transaction.commit();
}

}  // namespace

std::unique_ptr<SqliteDatabase> openLedgerFile(const std::string& path) {
  if (path.empty()) refuse("ledger", "has no name");
  const bool inMemory = path == ":memory:";
  if (!inMemory) {
    const auto header = readHeader(path);
    if (header && !wasBeingMade(path, *header)) {
      check(path, *header);
      checkWhole(path);
    }
  }
  auto database =
      std::make_unique<SqliteDatabase>(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  checkVersion(*database, path);
  makeTables(*database);
  database->useWriteAheadLog();
  return database;
}

}  // namespace StoreKit::detail
