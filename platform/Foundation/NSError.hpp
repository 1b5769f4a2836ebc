#pragma once

#include <any>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Foundation/NativeObject.hpp"

namespace Foundation {

/// User-info key of the description that people read; its value is a `std::string`.
inline constexpr std::string_view NSLocalizedDescriptionKey = "NSLocalizedDescription";
/// User-info key of the error beneath; its value is an `NSError`.
inline constexpr std::string_view NSUnderlyingErrorKey = "NSUnderlyingError";

/// The platform's error object: a domain, a code in it, and whatever else is known.
///
/// A small handle on immutable contents: cheap to copy, never empty (moving copies).
/// Thread: any.
class NSError {
 public:
  /// Values are `std::string`, `std::int64_t`, `double`, `bool` or `NSError`. What the platform put
  /// there and none of these can hold is missing here, and kept in the native object.
  using UserInfo = std::map<std::string, std::any, std::less<>>;

  NSError(std::string domain, std::int64_t code, UserInfo userInfo = {},
          std::shared_ptr<const NativeObject> native = nullptr);
  NSError(const NSError&) noexcept = default;
  NSError& operator=(const NSError&) noexcept = default;
  ~NSError() = default;

  /// An error whose user info holds nothing but this description.
  [[nodiscard]] static NSError withDescription(std::string domain, std::int64_t code,
                                               std::string description);

  [[nodiscard]] const std::string& domain() const;
  [[nodiscard]] std::int64_t code() const;
  [[nodiscard]] const UserInfo& userInfo() const;

  /// The text under `NSLocalizedDescriptionKey`; without one, "The operation couldn’t be
  /// completed. (DOMAIN error CODE.)", as the platform words it.
  [[nodiscard]] std::string localizedDescription() const;

  /// The error under `NSUnderlyingErrorKey`, if there is one.
  [[nodiscard]] std::optional<NSError> underlyingError() const;

  /// The platform's own object; null for an error that was made in C++.
  [[nodiscard]] const std::shared_ptr<const NativeObject>& native() const;

 private:
  struct Contents;
  std::shared_ptr<const Contents> contents_;
};

}  // namespace Foundation
