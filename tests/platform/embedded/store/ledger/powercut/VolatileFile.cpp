#include "tests/platform/embedded/store/ledger/powercut/VolatileFile.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tests {

namespace {

constexpr std::size_t kSector = 512;
constexpr std::size_t kWritesForATornOne = 10;

// Which of the changes a power cut leaves: none, all, the first ones, or, half of the times, any.
class Survivors {
 public:
  Survivors(std::size_t changes, Dice& dice) : dice_(dice), isAny_(dice.oneIn(2)) {
    const std::size_t ends[] = {0, changes, dice.below(changes + 1)};
    end_ = ends[dice.below(std::size(ends))];
  }

  bool include(std::size_t change) { return isAny_ ? dice_.oneIn(2) : change < end_; }

 private:
  Dice& dice_;
  bool isAny_;
  std::size_t end_ = 0;
};

void copyBytes(std::string& to, const std::string& from, std::size_t begin, std::size_t end,
               std::size_t at) {
  std::copy(from.begin() + static_cast<std::ptrdiff_t>(begin - at),
            from.begin() + static_cast<std::ptrdiff_t>(end - at),
            to.begin() + static_cast<std::ptrdiff_t>(begin));
}

}  // namespace

void VolatileFile::create() {
  if (!exists()) changes_.push_back({.kind = Kind::create});
}

void VolatileFile::write(std::size_t at, std::string bytes) {
  changes_.push_back({.kind = Kind::write, .at = at, .bytes = std::move(bytes)});
}

void VolatileFile::truncate(std::size_t size) {
  changes_.push_back({.kind = Kind::truncate, .at = size});
}

void VolatileFile::remove() {
  if (exists()) changes_.push_back({.kind = Kind::remove});
}

void VolatileFile::sync() {
  for (const auto& change : changes_) apply(synced_, change);
  changes_.clear();
}

// What was written into a file that was removed since is gone with it.
void VolatileFile::syncName() {
  const auto named = std::find_if(changes_.rbegin(), changes_.rend(), [](const Change& change) {
    return change.kind == Kind::create || change.kind == Kind::remove;
  });
  if (named == changes_.rend()) return;
  synced_.reset();
  apply(synced_, *named);
  changes_.erase(changes_.begin(), named.base());
}

bool VolatileFile::exists() const {
  bool exists = synced_.has_value();
  for (const auto& change : changes_) {
    if (change.kind == Kind::create) exists = true;
    if (change.kind == Kind::remove) exists = false;
  }
  return exists;
}

void VolatileFile::apply(Content& content, const Change& change) {
  switch (change.kind) {
    case Kind::create:
      content.emplace();
      return;
    case Kind::remove:
      content.reset();
      return;
    case Kind::truncate:
      content->resize(change.at);
      return;
    case Kind::write:
      break;
  }
  const auto end = change.at + change.bytes.size();
  if (content->size() < end) content->resize(end);
  copyBytes(*content, change.bytes, change.at, end, change.at);
}

void VolatileFile::applyTorn(Content& content, const Change& write, Dice& dice) {
  const auto end = write.at + write.bytes.size();
  if (content->size() < end) content->resize(end);
  for (auto begin = write.at; begin < end;) {
    const auto next = std::min(end, (begin / kSector + 1) * kSector);
    if (dice.oneIn(2)) copyBytes(*content, write.bytes, begin, next, write.at);
    begin = next;
  }
}

// Changes after a name was lost went to a file that nobody finds any more.
Content VolatileFile::afterPowerCut(Dice& dice) const {
  Content content = synced_;
  Survivors survivors(changes_.size(), dice);
  for (std::size_t i = 0; i < changes_.size(); ++i) {
    const auto& change = changes_[i];
    const bool names = change.kind == Kind::create || change.kind == Kind::remove;
    const bool survives = survivors.include(i);
    if (names && !survives) return content;
    if (!survives) continue;
    if (change.kind == Kind::write && dice.oneIn(kWritesForATornOne)) {
      applyTorn(content, change, dice);
    } else {
      apply(content, change);
    }
  }
  return content;
}

}  // namespace tests
