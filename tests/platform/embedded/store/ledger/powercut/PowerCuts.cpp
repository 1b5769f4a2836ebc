#include "tests/platform/embedded/store/ledger/powercut/PowerCuts.hpp"

#include <algorithm>
#include <utility>

#include "platform/embedded/sqlite/SqliteDatabase.hpp"

namespace tests {

namespace {

using Foundation::detail::SqliteDatabase;
using Foundation::detail::SqliteError;
using Foundation::detail::SqliteStatement;
using Operation = WatchedDisk::Operation;

// Within so many operations, what was asked for last is not on the disk.
constexpr std::size_t kSoon = 8;

std::string damageOf(const std::string& path) {
  try {
    SqliteDatabase database(path, SQLITE_OPEN_READWRITE);
    SqliteStatement check(database, "PRAGMA integrity_check");
    const auto said = check.next() ? check.text(0) : "nothing";
    return said == "ok" ? "" : "the check for damage says " + said;
  } catch (const SqliteError& error) {
    return error.what();
  }
}

}  // namespace

std::string PowerCuts::lookAtLeft(std::size_t operation) const {
  const auto opening = StoreKit::SqliteLedger::open(path_);
  if (!opening.ledger) return "the ledger is refused: " + opening.error;
  if (auto damage = damageOf(path_); !damage.empty()) return damage;
  return life_.history.complaint(*opening.ledger, operation);
}

std::string PowerCuts::complaint(const std::vector<std::size_t>& points, Dice& dice) {
  VolatileDisk disk(life_.start);
  const auto kept = dice.below(points.size());
  std::size_t done = 0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    for (; done < points[i]; ++done) disk.apply(life_.operations[done]);
    auto left = disk.afterPowerCut(dice);
    left.write(path_);
    if (i == kept) leftovers_ = std::move(left);
    const auto wrong = lookAtLeft(points[i]);
    if (wrong.empty()) continue;
    return "power cut " + std::to_string(i + 1) + " of " + std::to_string(points.size()) +
           ", before operation " + std::to_string(points[i]) + " of " +
           std::to_string(life_.operations.size()) + ": " + wrong;
  }
  return "";
}

std::vector<std::size_t> PowerCuts::pointsOf(std::initializer_list<Operation> kinds) const {
  std::vector<std::size_t> points;
  for (std::size_t i = 0; i < life_.operations.size(); ++i) {
    const auto kind = life_.operations[i].operation;
    if (std::find(kinds.begin(), kinds.end(), kind) != kinds.end()) points.push_back(i);
  }
  return points;
}

std::vector<std::size_t> PowerCuts::choose(std::size_t count, Dice& dice) const {
  const auto end = life_.operations.size();
  const auto syncs = pointsOf({Operation::sync});
  const auto losses = pointsOf({Operation::truncate, Operation::remove});
  const auto soonAfter = [&](const std::vector<std::size_t>& points) {
    return points.empty() ? end : points[dice.below(points.size())] + dice.below(kSoon);
  };
  std::vector<std::size_t> points;
  for (std::size_t i = 0; i < count; ++i) {
    const auto kind = dice.below(4);
    const auto point = kind == 0 ? dice.below(end + 1) : soonAfter(kind == 1 ? syncs : losses);
    points.push_back(std::min(point, end));
  }
  std::sort(points.begin(), points.end());
  return points;
}

std::vector<std::size_t> PowerCuts::each(std::size_t times) const {
  std::vector<std::size_t> points;
  for (std::size_t i = 0; i <= life_.operations.size(); ++i) points.insert(points.end(), times, i);
  return points;
}

}  // namespace tests
