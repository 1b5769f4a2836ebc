#include "platform/Foundation/UserDefaults.hpp"

#include <filesystem>
#include <map>
#include <mutex>
#include <optional>

#include "platform/Foundation/Print.hpp"
#include "platform/Foundation/UnicodeText.hpp"
#include "platform/embedded/Foundation/DefaultsFolder.hpp"
#include "platform/embedded/Foundation/DefaultsRow.hpp"
#include "platform/embedded/Foundation/DefaultsStore.hpp"
#include "platform/embedded/Foundation/DefaultsWriter.hpp"

namespace Foundation {

namespace {

constexpr std::size_t kLongestFileName = 200;

bool isPlain(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' ||
         c == '-' || c == '_';
}

// A name with everything that means something to a file system as %XX.
std::string fileName(std::string_view name) {
  constexpr std::string_view kHexDigits = "0123456789ABCDEF";
  std::string result;
  for (const char c : name) {
    if (isPlain(c) && (c != '.' || !result.empty())) {
      result += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      ((result += '%') += kHexDigits[byte >> 4U]) += kHexDigits[byte & 15U];
    }
  }
  return result + ".defaults";
}

// The one store of a file; it stays as long as the process.
DefaultsStore& storeNamed(std::string_view name) {
  static auto& mutex = *new std::mutex;
  static auto& stores = *new std::map<std::string, std::unique_ptr<DefaultsStore>, std::less<>>;
  const std::lock_guard lock(mutex);
  auto& store = stores[std::string(name)];
  if (store) return *store;
  auto path = defaultsFolder();
  if (path) path = (std::filesystem::path(*path) / fileName(name)).string();
  store = std::make_unique<DefaultsStore>(std::move(path));
  return *store;
}

}  // namespace

class UserDefaults::Implementation {
 public:
  explicit Implementation(DefaultsStore& store) : store_(store) {}

  [[nodiscard]] DefaultsStore& store() const { return store_; }

  void change(DefaultsObjectPtr object, std::string_view key) {
    store_.set(std::move(object), key);
    DefaultsWriter::shared().add(store_);
  }

 private:
  DefaultsStore& store_;
};

UserDefaults& UserDefaults::standardUserDefaults() {
  static auto& instance =
      *new UserDefaults(std::make_shared<Implementation>(storeNamed(programName())));
  return instance;
}

std::shared_ptr<UserDefaults> UserDefaults::withSuiteName(std::string_view name) {
  if (name.empty() || name == programName() || fileName(name).size() > kLongestFileName) {
    return nullptr;
  }
  return std::make_shared<UserDefaults>(std::make_shared<Implementation>(storeNamed(name)));
}

DefaultsObjectPtr UserDefaults::object(std::string_view key) const {
  return implementation_->store().object(key);
}

void UserDefaults::set(DefaultsObject object, std::string_view key) {
  const auto problem = isUTF8(key) ? storageProblem(object) : "the key is not UTF-8";
  if (!problem.empty()) return warn("The user defaults can't hold a value: " + problem);
  implementation_->change(std::make_shared<const DefaultsObject>(std::move(object)), key);
}

void UserDefaults::remove(std::string_view key) { implementation_->change(nullptr, key); }

std::vector<std::string> UserDefaults::keys() const { return implementation_->store().keys(); }

bool UserDefaults::synchronize() { return implementation_->store().synchronize(); }

}  // namespace Foundation
