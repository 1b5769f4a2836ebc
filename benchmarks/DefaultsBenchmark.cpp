// A typed get from the user defaults, beside a get of the same bytes from SQLite with the same
// decoding, and beside Qt's settings; and a set that is on the disk when it returns, beside one
// transaction of SQLite with full synchronisation. The value changes with each set.

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <filesystem>

#include "TQStoreKitLib/utilities/CodableDefaults.hpp"
#include "platform/embedded/Foundation/DefaultsFolder.hpp"

#ifdef TQSTOREKIT_QT
#include <QtCore/QSettings>
#endif

namespace {

using namespace Foundation;

struct Player {
  std::string name = "Anna of the Northern Lands";
  std::int64_t level = 41;
  double score = 1234.5;
  std::vector<std::string> badges = {"first steps", "treasure hunter", "night owl"};
  std::optional<std::string> guild = "The Lanterns";
};
template <class Coder>
void codableFields(Coder& coder, Player& player) {
  coder("name", player.name)("level", player.level)("score", player.score)("badges", player.badges)(
      "guild", player.guild);
}

std::string folder() {
  static const auto& path = *[] {
    auto name = (std::filesystem::temp_directory_path() / "tqstorekit-bench-XXXXXX").string();
    auto* const made = new std::string(::mkdtemp(name.data()));
    std::atexit([] { std::filesystem::remove_all(folder()); });
    setDefaultsFolder(*made);
    return made;
  }();
  return path;
}

UserDefaults& defaults() {
  (void)folder();
  return UserDefaults::standardUserDefaults();
}

Data encodedPlayer() { return *JSONEncoder().encode(Player()).data; }

// A database as somebody would set it up by hand who wants the same promises.
class Database {
 public:
  explicit Database(const char* name) {
    sqlite3_open((folder() + "/" + name).c_str(), &handle_);
    execute("PRAGMA journal_mode = WAL");
    execute("PRAGMA synchronous = FULL");
    execute("CREATE TABLE entries (key TEXT PRIMARY KEY NOT NULL, value BLOB) WITHOUT ROWID");
    prepare("SELECT value FROM entries WHERE key = ?", &get_);
    prepare("REPLACE INTO entries VALUES (?, ?)", &set_);
  }
  ~Database() {
    sqlite3_finalize(get_);
    sqlite3_finalize(set_);
    sqlite3_close(handle_);
  }
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  void set(std::string_view key, const Data& value) {
    bindKey(set_, key);
    sqlite3_bind_blob(set_, 2, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
    sqlite3_step(set_);
    sqlite3_reset(set_);
  }

  template <class Read>
  void get(std::string_view key, const Read& read) {
    bindKey(get_, key);
    sqlite3_step(get_);
    read(std::string_view(static_cast<const char*>(sqlite3_column_blob(get_, 0)),
                          static_cast<std::size_t>(sqlite3_column_bytes(get_, 0))));
    sqlite3_reset(get_);
  }

 private:
  void execute(const char* sql) { sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr); }
  void prepare(const char* sql, sqlite3_stmt** statement) {
    sqlite3_prepare_v2(handle_, sql, -1, statement, nullptr);
  }
  static void bindKey(sqlite3_stmt* statement, std::string_view key) {
    sqlite3_bind_text(statement, 1, key.data(), static_cast<int>(key.size()), SQLITE_STATIC);
  }

  sqlite3* handle_ = nullptr;
  sqlite3_stmt* get_ = nullptr;
  sqlite3_stmt* set_ = nullptr;
};

void getOurs(benchmark::State& state) {
  setCodable(defaults(), Player(), "player");
  for (auto _ : state) {
    auto player = codable<Player>(defaults(), "player");
    benchmark::DoNotOptimize(player->level);
  }
}

void getBare(benchmark::State& state) {
  Database database("get.sqlite");
  database.set("player", encodedPlayer());
  for (auto _ : state) {
    database.get("player", [](std::string_view json) {
      auto player = JSONDecoder().decode<Player>(json).value;
      benchmark::DoNotOptimize(player->level);
    });
  }
}

void getQt(benchmark::State& state) {
#ifdef TQSTOREKIT_QT
  QSettings settings(QString::fromStdString(folder() + "/qt.ini"), QSettings::IniFormat);
  const auto data = encodedPlayer();
  settings.setValue("player", QByteArray(textInData(data).data(), static_cast<int>(data.size())));
  for (auto _ : state) {
    const auto bytes = settings.value("player").toByteArray();
    const std::string_view json(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    auto player = JSONDecoder().decode<Player>(json).value;
    benchmark::DoNotOptimize(player->level);
  }
#else
  state.SkipWithError("Qt is not installed: its settings were not measured");
#endif
}

void setOurs(benchmark::State& state) {
  Player player;
  for (auto _ : state) {
    ++player.level;
    setCodable(defaults(), player, "player");
    if (!defaults().synchronize()) state.SkipWithError("not stored");
  }
}

void setBare(benchmark::State& state) {
  // Open for as long as ours is: a log that has just been begun grows with each transaction, which
  // takes longer than to write one over again.
  static auto& database = *new Database("set.sqlite");
  Player player;
  for (auto _ : state) {
    ++player.level;
    database.set("player", *JSONEncoder().encode(player).data);
  }
}

BENCHMARK(getOurs)->Name("typed get, beside SQLite/ours");
BENCHMARK(getBare)->Name("typed get, beside SQLite/bare");
BENCHMARK(getOurs)->Name("typed get, beside Qt's settings/ours");
BENCHMARK(getQt)->Name("typed get, beside Qt's settings/bare");
BENCHMARK(setOurs)->Name("durable set/ours")->UseRealTime();
BENCHMARK(setBare)->Name("durable set/bare")->UseRealTime();

}  // namespace
