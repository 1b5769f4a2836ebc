#include "platform/Foundation/UserDefaults.hpp"

#import <Foundation/Foundation.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/Foundation/Print.hpp"
#include "platform/Foundation/UnicodeText.hpp"
#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Foundation/Bridging.hpp"
#include "platform/apple/Foundation/DefaultsBridging.hpp"

namespace Foundation {

namespace {

// What the system calls the application's own store.
NSString* applicationName() {
  NSString* const identifier = [[NSBundle mainBundle] bundleIdentifier];
  return identifier != nil ? identifier : [[NSProcessInfo processInfo] processName];
}

// A name becomes a file name, and two names are taken.
bool canBeSuiteName(std::string_view name) {
  constexpr std::string_view kForbidden{"/\0", 2};
  return !name.empty() && isUTF8(name) &&
         name.find_first_of(kForbidden) == std::string_view::npos && name != "NSGlobalDomain" &&
         name != textFrom(applicationName());
}

}  // namespace

class UserDefaults::Implementation {
 public:
  Implementation(Retained<NSUserDefaults*> defaults, Retained<NSString*> name)
      : defaults_(std::move(defaults)), name_(std::move(name)) {}

  [[nodiscard]] NSUserDefaults* defaults() const { return defaults_.get(); }
  [[nodiscard]] NSString* name() const { return name_.get(); }

 private:
  Retained<NSUserDefaults*> defaults_;
  Retained<NSString*> name_;
};

UserDefaults& UserDefaults::standardUserDefaults() {
  using Ptr = std::shared_ptr<Implementation>;
  static auto& instance =
      *new UserDefaults(askPlatform("UserDefaults::standardUserDefaults", Ptr(), [] {
        return std::make_shared<Implementation>(
            Retained<NSUserDefaults*>::retain([NSUserDefaults standardUserDefaults]),
            Retained<NSString*>::retain(applicationName()));
      }));
  return instance;
}

std::shared_ptr<UserDefaults> UserDefaults::withSuiteName(std::string_view name) {
  using Ptr = std::shared_ptr<UserDefaults>;
  return askPlatform("UserDefaults::withSuiteName", nullptr, [name]() -> Ptr {
    if (!canBeSuiteName(name)) return nullptr;
    NSString* const nativeName = nativeText(name);
    auto defaults =
        Retained<NSUserDefaults*>::adopt([[NSUserDefaults alloc] initWithSuiteName:nativeName]);
    if (!defaults) return nullptr;
    return std::make_shared<UserDefaults>(std::make_shared<Implementation>(
        std::move(defaults), Retained<NSString*>::retain(nativeName)));
  });
}

DefaultsObjectPtr UserDefaults::object(std::string_view key) const {
  if (!isUTF8(key)) return nullptr;
  return askPlatform("UserDefaults::object", nullptr, [&]() -> DefaultsObjectPtr {
    auto object = defaultsObjectFrom([implementation_->defaults() objectForKey:nativeText(key)]);
    return object ? std::make_shared<const DefaultsObject>(std::move(*object)) : nullptr;
  });
}

void UserDefaults::set(DefaultsObject object, std::string_view key) {
  const auto problem = isUTF8(key) ? storageProblem(object) : "the key is not UTF-8";
  if (!problem.empty()) return warn("The user defaults can't hold a value: " + problem);
  callPlatform("UserDefaults::set", [&] {
    [implementation_->defaults() setObject:nativeDefaultsObject(object) forKey:nativeText(key)];
  });
}

void UserDefaults::remove(std::string_view key) {
  if (!isUTF8(key)) return;
  callPlatform("UserDefaults::remove",
               [&] { [implementation_->defaults() removeObjectForKey:nativeText(key)]; });
}

std::vector<std::string> UserDefaults::keys() const {
  auto keys = askPlatform("UserDefaults::keys", {}, [this] {
    // Without what the system and the command line add.
    auto* const values =
        [implementation_->defaults() persistentDomainForName:implementation_->name()];
    return listFrom([values allKeys], [](id key) { return textFrom(as<NSString>(key)); });
  });
  std::sort(keys.begin(), keys.end());
  return keys;
}

bool UserDefaults::synchronize() {
  const bool isStored = askPlatform("UserDefaults::synchronize", false, [this] {
    return [implementation_->defaults() synchronize] != NO;
  });
  if (!isStored) warn("The system could not store the user defaults.");
  return isStored;
}

}  // namespace Foundation
