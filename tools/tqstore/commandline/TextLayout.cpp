#include "tools/tqstore/commandline/TextLayout.hpp"

#include <algorithm>
#include <sstream>

namespace tqstore {

namespace {

constexpr std::size_t kWidestTerm = 22;
constexpr std::size_t kGap = 2;

std::string spaces(int count) { return std::string(static_cast<std::size_t>(count), ' '); }

// Takes words and makes lines of them.
class Filler {
 public:
  Filler(int indent, int width) : indent_(indent), width_(width) {}

  void add(const std::string& word) {
    const auto room = static_cast<std::size_t>(std::max(1, width_ - indent_));
    if (!line_.empty() && line_.size() + 1 + word.size() > room) endLine();
    line_ += (line_.empty() ? "" : " ") + word;
  }
  void endLine() {
    if (!line_.empty()) text_ += spaces(indent_) + line_ + "\n";
    line_.clear();
  }
  void addWhole(const std::string& line) {
    endLine();
    text_ += line.empty() ? "\n" : spaces(indent_) + line + "\n";
  }
  [[nodiscard]] std::string text() {
    endLine();
    return text_;
  }

 private:
  int indent_;
  int width_;
  std::string line_;
  std::string text_;
};

// What one term leaves for its meaning to stand beside.
std::string startOf(const std::string& term, int indent, std::size_t column) {
  auto start = spaces(indent) + term;
  if (term.size() > column) return start + "\n" + spaces(indent + static_cast<int>(column + kGap));
  return start + std::string(column + kGap - term.size(), ' ');
}

}  // namespace

std::string filled(const std::string& text, int indent, int width) {
  Filler filler(indent, width);
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line.front() == ' ') {
      filler.addWhole(line.empty() ? line : line.substr(1));
      continue;
    }
    std::istringstream words(line);
    for (std::string word; words >> word;) filler.add(word);
  }
  return filler.text();
}

std::string listed(const Definitions& definitions, int indent, int width) {
  std::size_t column = 0;
  for (const auto& [term, meaning] : definitions) {
    if (term.size() <= kWidestTerm) column = std::max(column, term.size());
  }
  std::string text;
  for (const auto& [term, meaning] : definitions) {
    const int beside = indent + static_cast<int>(column + kGap);
    const auto lines = filled(meaning, beside, width);
    const auto skipped = std::min(lines.size(), static_cast<std::size_t>(beside));
    text += lines.empty() ? spaces(indent) + term + "\n"
                          : startOf(term, indent, column) + lines.substr(skipped);
  }
  return text;
}

}  // namespace tqstore
