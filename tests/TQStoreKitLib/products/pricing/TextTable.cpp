#include "tests/TQStoreKitLib/products/pricing/TextTable.hpp"

#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <fstream>
#include <sstream>

namespace TQStoreKitLib::tests {

namespace {

std::string unescaped(const std::string& text) {
  std::string utf8;
  icu::UnicodeString::fromUTF8(text).unescape().toUTF8String(utf8);
  return utf8;
}

std::vector<std::string> columnsOf(const std::string& line) {
  std::vector<std::string> columns;
  std::istringstream stream(line);
  for (std::string column; std::getline(stream, column, '\t');) {
    columns.push_back(unescaped(column));
  }
  return columns;
}

bool isInvisible(UChar32 character) {
  if (character == ' ') return false;
  return (U_MASK(u_charType(character)) & (U_GC_Z_MASK | U_GC_C_MASK)) != 0;
}

std::string escape(UChar32 character) {
  std::array<char, 12> text{};
  std::snprintf(text.data(), text.size(), "\\u%04x", static_cast<unsigned>(character));
  return text.data();
}

}  // namespace

std::vector<LocaleTexts> readTextTable(std::string_view fileName) {
  std::vector<LocaleTexts> table;
  std::ifstream file(std::string(TQSTOREKIT_TEST_DATA "/data/cldr/").append(fileName));
  for (std::string line; std::getline(file, line);) {
    auto columns = columnsOf(line);
    if (table.empty() || table.back().locale != columns.front()) table.push_back({columns[0], {}});
    table.back().rows.push_back(std::move(columns));
  }
  return table;
}

std::string visible(std::string_view text) {
  const auto characters =
      icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
  std::string result;
  for (int32_t i = 0; i < characters.length(); i = characters.moveIndex32(i, 1)) {
    const auto character = characters.char32At(i);
    if (isInvisible(character)) {
      result += escape(character);
    } else {
      icu::UnicodeString(character).toUTF8String(result);
    }
  }
  return result;
}

std::string testName(std::string_view text) {
  std::string name(text);
  const auto isWord = [](unsigned char c) { return std::isalnum(c) != 0; };
  std::replace_if(name.begin(), name.end(), [&](char c) { return !isWord(c); }, '_');
  return name;
}

}  // namespace TQStoreKitLib::tests
