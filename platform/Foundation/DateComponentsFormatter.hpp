#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Foundation {

/// A span of time, component by component; what is absent says nothing.
struct DateComponents {
  std::optional<std::int64_t> year{};
  std::optional<std::int64_t> month{};
  std::optional<std::int64_t> weekOfMonth{};
  std::optional<std::int64_t> day{};
};

/// Writes a span of time in the words of the user's current locale.
///
/// The texts are the platform's own and change with its versions: compare them with nothing.
/// Thread: one formatter is used by one thread at a time.
class DateComponentsFormatter {
 public:
  enum class UnitsStyle : std::int64_t {
    abbreviated = 1,  ///< "3mo"
    shortened = 2,    ///< "3 mths"
    full = 3,         ///< "3 months": digits, and the unit's name in full
  };

  void setUnitsStyle(UnitsStyle style) { unitsStyle_ = style; }

  /// The components that are present, the longest first. Absent when none is, or when the platform
  /// has no text.
  [[nodiscard]] std::optional<std::string> stringFromDateComponents(
      const DateComponents& components) const;

 private:
  UnitsStyle unitsStyle_ = UnitsStyle::full;
};

}  // namespace Foundation
