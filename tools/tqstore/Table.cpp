#include "tools/tqstore/Table.hpp"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <numeric>

#include "tools/tqstore/Console.hpp"

namespace tqstore {

namespace {

constexpr int kGap = 2;
constexpr int kNarrowest = 6;

// Columns of the terminal that a character takes: none, one or two.
int cells(UChar32 character) {
  const auto category = u_charType(character);
  if (category == U_NON_SPACING_MARK || category == U_ENCLOSING_MARK || category == U_FORMAT_CHAR) {
    return 0;
  }
  const auto width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

// Calls `visit` with each character's end and cells, until it answers false.
template <class Visit>
void forEachCharacter(const std::string& text, Visit visit) {
  const auto length = static_cast<int32_t>(text.size());
  for (int32_t at = 0; at < length;) {
    UChar32 character = 0;
    U8_NEXT(text.data(), at, length, character);  // NOLINT(bugprone-inc-dec-in-conditions): ICU's
    if (!visit(static_cast<std::size_t>(at), cells(std::max<UChar32>(character, 0)))) return;
  }
}

int displayWidth(const std::string& text) {
  int width = 0;
  forEachCharacter(text, [&](std::size_t, int taken) {
    width += taken;
    return true;
  });
  return width;
}

std::string shortened(const std::string& text, int width) {
  if (displayWidth(text) <= width) return text;
  std::size_t kept = 0;
  int used = 0;
  forEachCharacter(text, [&](std::size_t end, int taken) {
    if (used + taken > width - 1) return false;
    used += taken;
    kept = end;
    return true;
  });
  return text.substr(0, kept) + "…";
}

}  // namespace

std::vector<int> Table::widths(int width) const {
  std::vector<int> widths;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    int widest = displayWidth(columns_[i].title);
    for (const auto& row : rows_) widest = std::max(widest, displayWidth(row[i]));
    widths.push_back(widest);
  }
  const int gaps = kGap * (static_cast<int>(columns_.size()) - 1);
  for (int over = std::accumulate(widths.begin(), widths.end(), gaps) - width; over > 0; --over) {
    int* widest = nullptr;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      const bool shrinks = !columns_[i].whole && widths[i] > kNarrowest;
      if (shrinks && (widest == nullptr || widths[i] > *widest)) widest = &widths[i];
    }
    if (widest == nullptr) break;
    --*widest;
  }
  return widths;
}

void Table::writeRow(const std::vector<std::string>& row, const std::vector<int>& widths,
                     bool heading) const {
  std::string line;
  for (std::size_t i = 0; i < row.size(); ++i) {
    const auto text = shortened(row[i], widths[i]);
    const auto padding = static_cast<std::size_t>(std::max(0, widths[i] - displayWidth(text)));
    if (i > 0) line.append(kGap, ' ');
    if (columns_[i].align == Align::right) line.append(padding, ' ');
    line += text;
    if (columns_[i].align == Align::left && i + 1 < row.size()) line.append(padding, ' ');
  }
  writeLine(heading ? styled(line, Style::bold) : line);
}

void Table::write(int width) const {
  const auto fitted = widths(width);
  std::vector<std::string> titles;
  titles.reserve(columns_.size());
  for (const auto& column : columns_) titles.push_back(column.title);
  writeRow(titles, fitted, true);
  for (const auto& row : rows_) writeRow(row, fitted, false);
}

}  // namespace tqstore
