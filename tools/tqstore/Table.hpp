#pragma once

#include <string>
#include <vector>

namespace tqstore {

/// A table for a person: columns side by side, the widest shortened until the line fits.
class Table {
 public:
  enum class Align { left, right };

  struct Column {
    std::string title;
    Align align = Align::left;
    /// Never shortened: a shortened identifier cannot be typed again, a shortened price is wrong.
    bool whole = false;
  };

  explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

  /// One text for each column.
  void add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }

  /// Writes the titles and the rows to standard output. Columns that are not whole shrink, to a few
  /// letters at the least, until the table is `width` columns wide.
  void write(int width) const;

 private:
  [[nodiscard]] std::vector<int> widths(int width) const;
  void writeRow(const std::vector<std::string>& row, const std::vector<int>& widths,
                bool heading) const;

  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace tqstore
