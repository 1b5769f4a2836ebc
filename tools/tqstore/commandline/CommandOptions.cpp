#include "tools/tqstore/commandline/CommandOptions.hpp"

#include <CLI/CLI.hpp>

namespace tqstore {

CommandOption& CommandOption::required() {
  option_->required();
  return *this;
}

CommandOption& CommandOption::valueName(const std::string& name) {
  option_->type_name(name);
  return *this;
}

CommandOption& CommandOption::environmentVariable(const std::string& name) {
  option_->envname(name);
  return *this;
}

CommandOption& CommandOption::showsDefault() {
  option_->capture_default_str();
  return *this;
}

CommandOption& CommandOption::excludes(const CommandOption& other) {
  option_->excludes(other.option_);
  return *this;
}

CommandOption& CommandOption::oneOf(const std::vector<std::string>& values) {
  option_->check(CLI::IsMember(values));
  return *this;
}

CommandOption& CommandOption::refusedFor(
    const std::function<std::string(const std::string&)>& problem) {
  option_->check(CLI::Validator(problem, ""));
  return *this;
}

CommandOption CommandOptions::addOption(const std::string& name, std::string& value,
                                        const std::string& meaning) {
  return CommandOption(*app_->add_option(name, value, meaning));
}

CommandOption CommandOptions::addOption(const std::string& name, std::optional<std::string>& value,
                                        const std::string& meaning) {
  return CommandOption(*app_->add_option(name, value, meaning));
}

CommandOption CommandOptions::addOption(const std::string& name, std::vector<std::string>& value,
                                        const std::string& meaning) {
  return CommandOption(*app_->add_option(name, value, meaning));
}

CommandOption CommandOptions::addOption(const std::string& name, std::int64_t& value,
                                        const std::string& meaning) {
  return CommandOption(*app_->add_option(name, value, meaning));
}

CommandOption CommandOptions::addOption(const std::string& name, std::optional<int>& value,
                                        const std::string& meaning) {
  return CommandOption(*app_->add_option(name, value, meaning));
}

CommandOption CommandOptions::addFlag(const std::string& name, bool& value,
                                      const std::string& meaning) {
  return CommandOption(*app_->add_flag(name, value, meaning));
}

// The name of a group is a key only: nothing shows it.
CommandOptions CommandOptions::addAlternatives() {
  return CommandOptions(*app_->add_option_group("alternatives")->require_option(1));
}

}  // namespace tqstore
