#include "platform/embedded/Foundation/DefaultsStore.hpp"

#include <utility>

#include "platform/Foundation/Print.hpp"

namespace Foundation {

namespace {

void put(DefaultsValues& values, std::string_view key, DefaultsObjectPtr object) {
  const auto found = values.find(key);
  if (found != values.end()) {
    found->second = std::move(object);
  } else {
    values.emplace(key, std::move(object));
  }
}

void apply(DefaultsValues& values, std::string_view key, const DefaultsObjectPtr& object) {
  if (object) return put(values, key, object);
  const auto found = values.find(key);
  if (found != values.end()) values.erase(found);
}

}  // namespace

DefaultsStore::DefaultsStore(std::optional<std::string> path) {
  if (!path) {
    complain("No folder is named for the user defaults");
    return;
  }
  auto opening = DefaultsFile::open(*path);
  file_ = std::move(opening.file);
  values_ = std::move(opening.content);
  if (!file_) complain(opening.problem);
}

DefaultsObjectPtr DefaultsStore::object(std::string_view key) const {
  const std::shared_lock lock(mutex_);
  const auto found = values_.find(key);
  return found == values_.end() ? nullptr : found->second;
}

std::vector<std::string> DefaultsStore::keys() const {
  std::vector<std::string> keys;
  const std::shared_lock lock(mutex_);
  keys.reserve(values_.size());
  for (const auto& [key, object] : values_) keys.push_back(key);
  return keys;
}

void DefaultsStore::set(DefaultsObjectPtr object, std::string_view key) {
  const std::unique_lock lock(mutex_);
  apply(values_, key, object);
  put(changes_, key, std::move(object));
}

bool DefaultsStore::synchronize() {
  const std::lock_guard lock(fileMutex_);
  if (!file_) return false;
  auto changes = takeChanges();
  auto exchange = file_->exchange(changes);
  if (!exchange.isStored) putBack(std::move(changes));
  if (exchange.content) takeIn(std::move(*exchange.content));
  complain(exchange.problem);
  return exchange.isStored;
}

DefaultsValues DefaultsStore::takeChanges() {
  const std::unique_lock lock(mutex_);
  return std::exchange(changes_, {});
}

// Changes that were made meanwhile are newer.
void DefaultsStore::putBack(DefaultsValues changes) {
  const std::unique_lock lock(mutex_);
  changes_.merge(changes);
}

void DefaultsStore::takeIn(DefaultsValues content) {
  const std::unique_lock lock(mutex_);
  values_.swap(content);
  for (const auto& [key, object] : changes_) apply(values_, key, object);
}

// Says a problem once, and not at each attempt.
void DefaultsStore::complain(const std::string& problem) {
  if (std::exchange(lastProblem_, problem) == problem || problem.empty()) return;
  warn(problem + ". The user defaults are kept in memory.");
}

}  // namespace Foundation
