#pragma once

#include <optional>
#include <string>

namespace Foundation {

/// A language, a region and, where they differ from what follows from these, a currency.
///
/// Written as the platform writes it: "en_US", "zh_Hans", "en_US@currency=BRL".
/// Thread: a plain value; `current` and `currencyCode` may be called from any.
class Locale {
 public:
  Locale() = default;
  /// Keeps the text as it is; it is not checked.
  explicit Locale(std::string identifier) : identifier_(std::move(identifier)) {}

  /// The user's own locale, as the system has it now.
  [[nodiscard]] static Locale current();

  [[nodiscard]] const std::string& identifier() const { return identifier_; }

  /// The three-letter currency code (ISO 4217): the one that the identifier names, else the
  /// region's. Absent when neither says one.
  [[nodiscard]] std::optional<std::string> currencyCode() const;

  friend bool operator==(const Locale&, const Locale&) = default;

 private:
  std::string identifier_;
};

}  // namespace Foundation
