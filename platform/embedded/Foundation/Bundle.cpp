#include "platform/Foundation/Bundle.hpp"

#include <mutex>
#include <utility>

#include "platform/embedded/Foundation/MainBundle.hpp"

namespace Foundation {

namespace {

struct StringsTable {
  std::mutex mutex;
  std::map<std::string, std::string, std::less<>> strings;
};

StringsTable& table() {
  static auto& instance = *new StringsTable;
  return instance;
}

}  // namespace

void setMainBundleStrings(std::map<std::string, std::string, std::less<>> strings) {
  const std::lock_guard lock(table().mutex);
  table().strings = std::move(strings);
}

std::string localizedString(std::string_view key) {
  const std::lock_guard lock(table().mutex);
  const auto found = table().strings.find(key);
  return found == table().strings.end() ? std::string(key) : found->second;
}

}  // namespace Foundation
