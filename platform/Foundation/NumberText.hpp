#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Foundation {

/// Reads a whole text as a floating number, as C's `strtod` does in the C locale, whatever the
/// process's locale is: "12", "-.5", "5.", "1.5e12", "0x1p10", "inf", "nan". What is too large
/// becomes infinite, what is too small zero or nearly so.
///
/// Absent for the empty text and for leftovers: blanks at either end, a unit, a NUL.
/// Thread: any.
[[nodiscard]] std::optional<double> doubleFromText(std::string_view text);

/// The shortest text that reads back as the same number, with a point whatever the process's locale
/// is: "0.1", "3", "-0", "1e+21". What is not finite is "inf", "-inf" or "nan".
///
/// Thread: any.
[[nodiscard]] std::string textFromDouble(double number);

}  // namespace Foundation
