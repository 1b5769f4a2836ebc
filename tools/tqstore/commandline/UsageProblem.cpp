#include "tools/tqstore/commandline/UsageProblem.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <numeric>
#include <vector>

#include "tools/tqstore/commandline/CommandLine.hpp"
#include "tools/tqstore/commandline/OptionText.hpp"

namespace tqstore {

namespace {

// How many letters are to be changed, added or left out to make the one of the other.
std::size_t distance(const std::string& one, const std::string& other) {
  std::vector<std::size_t> row(other.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < one.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < other.size(); ++j) {
      const auto replaced = diagonal + (one[i] == other[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

// "; did you mean buy?", when there is something that is nearly `word`.
std::string suggestion(const std::string& word, const std::vector<std::string>& known) {
  std::string nearest;
  auto least = word.size() / 3 + 1;
  for (const auto& candidate : known) {
    const auto letters = distance(word, candidate);
    if (letters > least || (letters == least && !nearest.empty())) continue;
    least = letters;
    nearest = candidate;
  }
  return nearest.empty() ? "" : "; did you mean " + nearest + "?";
}

std::vector<std::string> commandNames(const CommandLine& line) {
  std::vector<std::string> names;
  for (const auto& command : line.commands()) names.push_back(command.name);
  return names;
}

std::vector<std::string> optionNames(const CommandLine& line, const CLI::App* command) {
  auto options = optionsOf(line.app());
  if (command != nullptr) {
    const auto own = optionsOf(*command);
    options.insert(options.end(), own.begin(), own.end());
  }
  std::vector<std::string> names;
  for (const auto* option : options) {
    for (const auto& name : namesOf(*option)) names.push_back(name);
  }
  return names;
}

std::string unknownWord(const CommandLine& line, const CLI::App* command, const std::string& word) {
  if (word.starts_with("-")) {
    const auto name = word.substr(0, word.find('='));
    return "there is no option " + printable(name) + suggestion(name, optionNames(line, command));
  }
  if (command != nullptr)
    return command->get_name() + " has no use for \"" + printable(word) + "\"";
  return "there is no command \"" + printable(word) + "\"" + suggestion(word, commandNames(line));
}

// Of alternatives none, or more than one. Empty when that is not what is wrong.
std::string wrongChoice(const CLI::App& command) {
  for (const auto* group : groupsOf(command)) {
    if (group->count_all() != group->get_require_option_min()) {
      return command.get_name() + " wants one of these: " + alternativesText(*group);
    }
  }
  return "";
}

std::string problem(const CommandLine& line, const CLI::App* command,
                    const CLI::ParseError& error) {
  const auto unknown = line.app().remaining(true);
  if (!unknown.empty()) return unknownWord(line, command, unknown.front());
  if (command == nullptr) return error.what();
  const auto choice = wrongChoice(*command);
  return choice.empty() ? error.what() : choice;
}

}  // namespace

std::string usageProblem(const CommandLine& line, const CLI::ParseError& error) {
  const auto chosen = line.app().get_subcommands();
  const auto* const command = chosen.empty() ? nullptr : chosen.front();
  const auto page = command == nullptr ? "" : command->get_name() + " ";
  return problem(line, command, error) + "\n(tqstore " + page + "--help tells more)";
}

}  // namespace tqstore
