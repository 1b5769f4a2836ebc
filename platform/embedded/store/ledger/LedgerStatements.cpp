#include "platform/embedded/store/ledger/LedgerStatements.hpp"

#include <vector>

#include "platform/embedded/store/ledger/LedgerRow.hpp"

namespace StoreKit::detail {

namespace {

std::vector<std::string_view> columns() {
  constexpr std::string_view kBetween = ", ";
  std::vector<std::string_view> names;
  std::string_view left = kEntryColumns;
  for (auto at = left.find(kBetween); at != left.npos; at = left.find(kBetween)) {
    names.push_back(left.substr(0, at));
    left.remove_prefix(at + kBetween.size());
  }
  names.push_back(left);
  return names;
}

std::string parameter(std::size_t column) { return "?" + std::to_string(column + 1); }

std::string makeInsertion() {
  std::string parameters;
  for (std::size_t i = 0; i < columns().size(); ++i) {
    parameters += (i > 0 ? "," : "") + parameter(i);
  }
  return std::string("INSERT INTO entry(") + kEntryColumns + ") VALUES(" + parameters + ")";
}

// The last column is the number.
std::string makeReplacement(bool moves) {
  const auto names = columns();
  const auto last = names.size() - 1;
  std::string changes;
  for (std::size_t i = 0; i < last; ++i) {
    if (names[i] == "finished" && !moves) continue;
    changes += (changes.empty() ? "" : ", ") + std::string(names[i]) + " = " + parameter(i);
  }
  return "UPDATE entry SET " + changes + " WHERE identifier = " + parameter(last) +
         " AND revision = " + parameter(names.size()) + (moves ? "" : " AND finished = 0");
}

}  // namespace

const std::string& insertion() {
  static const auto& text = *new std::string(makeInsertion());
  return text;
}

const std::string& replacement(bool moves) {
  static const auto& staying = *new std::string(makeReplacement(false));
  static const auto& moving = *new std::string(makeReplacement(true));
  return moves ? moving : staying;
}

std::string selection(std::string_view condition) {
  return std::string("SELECT ") + kEntryColumns + " FROM entry " + std::string(condition);
}

}  // namespace StoreKit::detail
