#include "platform/Foundation/NSError.hpp"

#include <utility>

namespace Foundation {

struct NSError::Contents {
  std::string domain;
  std::int64_t code;
  UserInfo userInfo;
  std::shared_ptr<const NativeObject> native;
};

NSError::NSError(std::string domain, std::int64_t code, UserInfo userInfo,
                 std::shared_ptr<const NativeObject> native)
    : contents_(std::make_shared<const Contents>(
          Contents{std::move(domain), code, std::move(userInfo), std::move(native)})) {}

NSError NSError::withDescription(std::string domain, std::int64_t code, std::string description) {
  UserInfo userInfo;
  userInfo.emplace(NSLocalizedDescriptionKey, std::move(description));
  return {std::move(domain), code, std::move(userInfo)};
}

const std::string& NSError::domain() const { return contents_->domain; }
std::int64_t NSError::code() const { return contents_->code; }
const NSError::UserInfo& NSError::userInfo() const { return contents_->userInfo; }

std::string NSError::localizedDescription() const {
  const auto entry = contents_->userInfo.find(NSLocalizedDescriptionKey);
  if (entry != contents_->userInfo.end()) {
    if (const auto* text = std::any_cast<std::string>(&entry->second)) return *text;
  }
  return "The operation couldn’t be completed. (" + domain() + " error " + std::to_string(code()) +
         ".)";
}

std::optional<NSError> NSError::underlyingError() const {
  const auto entry = contents_->userInfo.find(NSUnderlyingErrorKey);
  if (entry == contents_->userInfo.end()) return std::nullopt;
  const auto* error = std::any_cast<NSError>(&entry->second);
  return error ? std::optional<NSError>(*error) : std::nullopt;
}

const std::shared_ptr<const NativeObject>& NSError::native() const { return contents_->native; }

}  // namespace Foundation
