#include "tools/tqstore/commandline/Completion.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>
#include <optional>

#include "tools/tqstore/commandline/CompletionValues.hpp"
#include "tools/tqstore/commandline/OptionText.hpp"

namespace tqstore {

namespace {

std::string environment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

// The shell has not replaced it yet.
std::string withoutTilde(const std::string& path) {
  return path.starts_with("~/") ? environment("HOME") + path.substr(1) : path;
}

bool isOption(const std::string& word) { return word.size() > 1 && word.front() == '-'; }

// Follows the words up to the one that is being typed.
class Reader {
 public:
  explicit Reader(const CommandLine& line) : line_(line) {
    options_.config = environment("TQSTORE_CONFIG");
    options_.ledger = environment("TQSTORE_LEDGER");
  }

  void read(const std::string& word) {
    if (word == "=") return;  // some shells make three words of --config=FILE
    if (const auto* option = std::exchange(awaiting_, nullptr)) return take(*option, word);
    if (onlyArguments_ || !isOption(word)) return readArgument(word);
    if (word == "--") {
      onlyArguments_ = true;
      return;
    }
    const auto equals = word.find('=');
    const auto* option = find(word.substr(0, equals));
    if (option == nullptr || !takesValue(*option)) return;
    if (equals == std::string::npos) {
      awaiting_ = option;
    } else {
      take(*option, word.substr(equals + 1));
    }
  }

  [[nodiscard]] Completion complete(const std::string& word) const {
    if (awaiting_ != nullptr) return values(awaiting_->get_type_name());
    if (!onlyArguments_ && word.starts_with('-')) return {.candidates = optionNames()};
    if (isUnknown_) return {};
    if (command_ == nullptr) return {.candidates = commandNames()};
    const auto* argument = nextArgument();
    return argument == nullptr ? Completion() : values(argument->get_name(true));
  }

 private:
  void take(const CLI::Option& option, const std::string& value) {
    if (option.check_lname("config")) options_.config = withoutTilde(value);
    if (option.check_lname("ledger")) options_.ledger = withoutTilde(value);
  }

  void readArgument(const std::string& word) {
    if (command_ != nullptr || isUnknown_) return arguments_.push_back(word);
    for (const auto& command : line_.commands()) {
      if (command.name == word) command_ = command.app;
    }
    isUnknown_ = command_ == nullptr;
  }

  [[nodiscard]] std::vector<const CLI::Option*> options() const {
    auto all = optionsOf(line_.app());
    if (command_ == nullptr) return all;
    auto own = optionsOf(*command_);
    all.erase(std::remove(all.begin(), all.end(), line_.app().get_help_ptr()), all.end());
    own.insert(own.end(), all.begin(), all.end());
    return own;
  }

  [[nodiscard]] const CLI::Option* find(const std::string& name) const {
    for (const auto* option : options()) {
      const auto names = namesOf(*option);
      if (std::find(names.begin(), names.end(), name) != names.end()) return option;
    }
    return nullptr;
  }

  [[nodiscard]] Definitions optionNames() const {
    Definitions list;
    for (const auto* option : options()) {
      if (option->nonpositional()) {
        list.emplace_back(namesOf(*option).back(), option->get_description());
      }
    }
    return list;
  }

  [[nodiscard]] Definitions commandNames() const {
    Definitions list;
    for (const auto& command : line_.commands()) {
      list.emplace_back(command.name, command.manual.summary);
    }
    return list;
  }

  [[nodiscard]] const CLI::Option* nextArgument() const {
    std::size_t left = arguments_.size();
    for (const auto* option : optionsOf(*command_)) {
      if (option->get_positional() && (left-- == 0 || isList(*option))) return option;
    }
    return nullptr;
  }

  [[nodiscard]] Completion values(const std::string& name) const {
    return valuesOf({.name = name, .before = arguments_.empty() ? "" : arguments_.back()},
                    options_);
  }

  const CommandLine& line_;
  GlobalOptions options_;
  const CLI::App* command_ = nullptr;
  bool isUnknown_ = false;  // the command is none
  const CLI::Option* awaiting_ = nullptr;
  bool onlyArguments_ = false;
  std::vector<std::string> arguments_;
};

// "--config=sh" is completed behind its name.
std::string splitOption(const std::string& word, Reader& reader) {
  const auto equals = word.find('=');
  if (!isOption(word) || equals == std::string::npos) return word == "=" ? "" : word;
  reader.read(word.substr(0, equals));
  return word.substr(equals + 1);
}

}  // namespace

Completion complete(const CommandLine& line, const std::vector<std::string>& words) {
  Reader reader(line);
  for (std::size_t i = 0; i + 1 < words.size(); ++i) reader.read(words[i]);
  const auto last = words.empty() ? "" : words.back();
  const auto typed = splitOption(last, reader);
  const auto start = last.substr(0, last == "=" ? 0 : last.size() - typed.size());
  auto completion = reader.complete(typed);
  auto& candidates = completion.candidates;
  const auto differs = [&](const auto& candidate) { return candidate.first.rfind(typed, 0) != 0; };
  candidates.erase(std::remove_if(candidates.begin(), candidates.end(), differs), candidates.end());
  for (auto& [word, meaning] : candidates) word.insert(0, start);
  return completion;
}

}  // namespace tqstore
