#include "tools/tqstore/commandline/CommandOptions.hpp"

#include <CLI/CLI.hpp>
#include <charconv>

#include "tools/tqstore/Console.hpp"

namespace tqstore {

namespace {

// The parser would take "0x3", round what is too large, and read nothing as 0.
template <typename Number>
std::string numberProblem(const std::string& text) {
  Number number{};
  const auto* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error == std::errc() && stop == end) return "";
  const bool tooLarge = error == std::errc::result_out_of_range;
  return "\"" + printable(text) + "\" is " + (tooLarge ? "out of range" : "no whole number");
}

template <typename Number>
CommandOption checked(CLI::Option& option) {
  option.check(CLI::Validator(numberProblem<Number>, ""));
  return CommandOption(option);
}

}  // namespace

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
  return checked<std::int64_t>(*app_->add_option(name, value, meaning));
}

CommandOption CommandOptions::addOption(const std::string& name, std::optional<int>& value,
                                        const std::string& meaning) {
  return checked<int>(*app_->add_option(name, value, meaning));
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
