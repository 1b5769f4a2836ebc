#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/Foundation/JSONNumber.hpp"

namespace Foundation {

/// Takes JSON text apart into its marks, words, numbers and texts.
///
/// The first thing that is wrong is the `problem`; after that nothing can be taken.
/// Thread: one scanner is used by one thread at a time.
class JSONScanner {
 public:
  explicit JSONScanner(std::string_view text);

  /// The next character that is no blank; NUL at the end.
  [[nodiscard]] char next();
  [[nodiscard]] bool isAtEnd();

  /// Takes `mark` if it comes next.
  [[nodiscard]] bool take(char mark);
  /// These three fail if something else comes next.
  [[nodiscard]] bool takeWord(std::string_view word);
  [[nodiscard]] bool takeNumber(JSONNumber& number);
  /// The text stays valid as long as the scanner is there.
  [[nodiscard]] bool takeText(std::string_view& text);

  /// Says what is wrong at the place that was reached. Answers false.
  bool fail(std::string_view message);
  /// Ends the scanning for this reason. Answers false.
  bool stop(std::string problem);
  [[nodiscard]] const std::string& problem() const { return problem_; }

 private:
  bool takeEscape(char*& out);
  bool takeCodeUnits(std::u16string& units);
  bool takeCodeUnit(char16_t& unit);
  bool takeDigits();

  std::string text_;
  std::size_t at_ = 0;
  std::string problem_;
};

}  // namespace Foundation
