#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace TQStoreKitLib::tests {

/// The expected texts of one locale: the columns of each of its rows, texts as they are.
struct LocaleTexts {
  std::string locale;
  std::vector<std::vector<std::string>> rows;

  friend std::ostream& operator<<(std::ostream& stream, const LocaleTexts& texts) {
    return stream << texts.locale;
  }
};

/// Reads a table of tests/data/cldr, by locale, in the table's order. Empty when there is no file.
[[nodiscard]] std::vector<LocaleTexts> readTextTable(std::string_view fileName);

/// The text with its invisible characters as \uXXXX, so that a failure shows them.
[[nodiscard]] std::string visible(std::string_view text);

/// A locale's identifier, or any text, with only what a test's name may have.
[[nodiscard]] std::string testName(std::string_view text);

}  // namespace TQStoreKitLib::tests
