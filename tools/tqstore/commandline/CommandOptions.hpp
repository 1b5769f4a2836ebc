#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace tqstore {

/// One option or positional argument of a command. What describes it gives it again, so that one
/// call follows the other.
class CommandOption {
 public:
  explicit CommandOption(CLI::Option& option) : option_(&option) {}

  CommandOption& required();
  /// What stands for its value in the help: the N of "--quantity N".
  CommandOption& valueName(const std::string& name);
  /// The environment variable that is read when the option is not given.
  CommandOption& environmentVariable(const std::string& name);
  /// The help shows what the value is when the option is not given.
  CommandOption& showsDefault();
  CommandOption& excludes(const CommandOption& other);
  CommandOption& oneOf(const std::vector<std::string>& values);
  /// `problem` says what is wrong with a value, or gives an empty text.
  CommandOption& refusedFor(const std::function<std::string(const std::string&)>& problem);

 private:
  CLI::Option* option_;
};

/// What a command may be given.
///
/// A positional argument is named after what it is; names that completion knows (`Completion.hpp`)
/// are completed. An option's name begins with "--", and with "!" when giving it makes `value`
/// false. What the arguments are read into must live as long as the command line: let the command's
/// function hold it. Numbers are whole and decimal; others are wrong usage.
class CommandOptions {
 public:
  explicit CommandOptions(CLI::App& app) : app_(&app) {}

  CommandOption addOption(const std::string& name, std::string& value, const std::string& meaning);
  CommandOption addOption(const std::string& name, std::optional<std::string>& value,
                          const std::string& meaning);
  CommandOption addOption(const std::string& name, std::vector<std::string>& value,
                          const std::string& meaning);
  CommandOption addOption(const std::string& name, std::int64_t& value, const std::string& meaning);
  CommandOption addOption(const std::string& name, std::optional<int>& value,
                          const std::string& meaning);
  CommandOption addFlag(const std::string& name, bool& value, const std::string& meaning);

  /// Options of which exactly one must be given.
  CommandOptions addAlternatives();

 private:
  CLI::App* app_;
};

}  // namespace tqstore
