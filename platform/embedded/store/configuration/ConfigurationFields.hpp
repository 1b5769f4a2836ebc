#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/embedded/store/configuration/ConfigurationProblems.hpp"

namespace StoreKit::detail {

/// The members of one object of the file, read as what they have to be.
///
/// What is missing or null gives the fallback silently; what has another type gives the fallback
/// and a warning. Refers to the object and to `problems`, which must outlive it.
class ConfigurationFields {
 public:
  ConfigurationFields(const ConfigurationValue& object, ConfigurationProblems& problems)
      : object_(object), problems_(problems) {}

  [[nodiscard]] const ConfigurationValue& object() const { return object_; }
  /// The member, or null when it is missing or null.
  [[nodiscard]] const ConfigurationValue* find(std::string_view key) const;

  [[nodiscard]] std::string text(std::string_view key, std::string_view fallback = {}) const;
  [[nodiscard]] bool flag(std::string_view key) const;
  [[nodiscard]] std::int64_t wholeNumber(std::string_view key, std::int64_t fallback) const;
  [[nodiscard]] const ConfigurationValue::Array& list(std::string_view key) const;

  /// Absent, with a warning that ends in `consequence`, when it is missing or can't be read.
  [[nodiscard]] std::optional<Foundation::Decimal> price(std::string_view key,
                                                         std::string_view consequence) const;
  [[nodiscard]] std::optional<SKProductSubscriptionPeriod> duration(
      std::string_view key, std::string_view consequence) const;

  /// Warns about the object as a whole.
  void warn(std::string message) const;
  /// Warns about the member, or about the object when there is no such member.
  void warn(std::string_view key, std::string message) const;

 private:
  void warnAboutKind(const ConfigurationValue& value, std::string_view expected,
                     const std::string& readAs) const;
  void warnAboutMissing(std::string_view key, std::string_view consequence) const;

  const ConfigurationValue& object_;
  ConfigurationProblems& problems_;
};

}  // namespace StoreKit::detail
