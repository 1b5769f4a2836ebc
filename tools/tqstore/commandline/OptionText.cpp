#include "tools/tqstore/commandline/OptionText.hpp"

#include <CLI/CLI.hpp>

namespace tqstore {

namespace {

// "PRODUCT", "[KEY]", "FILE...".
std::string positionalText(const CLI::Option& option) {
  const auto name = option.get_name(true) + (isList(option) ? "..." : "");
  return option.get_required() ? name : "[" + name + "]";
}

// "-h, --help", "--quantity N".
std::string optionText(const CLI::Option& option) {
  std::string text;
  for (const auto& name : namesOf(option)) text += (text.empty() ? "" : ", ") + name;
  return takesValue(option) ? text + " " + option.get_type_name() : text;
}

// A group inherits --help, which is none of its alternatives.
std::vector<const CLI::Option*> alternativesOf(const CLI::App& group) {
  return group.get_options(
      [&](const CLI::Option* option) { return option != group.get_help_ptr(); });
}

std::string meaning(const CLI::Option& option) {
  const auto value = option.get_default_str();
  return option.get_description() + (value.empty() ? "" : " (default: " + value + ")") + ".";
}

}  // namespace

std::vector<const CLI::Option*> optionsOf(const CLI::App& app) {
  auto options = app.get_options([](const CLI::Option*) { return true; });
  for (const auto* group : groupsOf(app)) {
    const auto alternatives = alternativesOf(*group);
    options.insert(options.end(), alternatives.begin(), alternatives.end());
  }
  return options;
}

// One is a command without a name.
std::vector<const CLI::App*> groupsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App* inner) { return inner->get_name().empty(); });
}

std::string alternativesText(const CLI::App& group) {
  std::string text;
  for (const auto* option : alternativesOf(group)) {
    text += text.empty() ? "" : " | ";
    text += option->get_positional() ? option->get_name(true) : optionText(*option);
  }
  return text;
}

bool takesValue(const CLI::Option& option) {
  return option.nonpositional() && option.get_items_expected_max() > 0;
}

bool isList(const CLI::Option& option) { return option.get_items_expected_max() > 1; }

std::vector<std::string> namesOf(const CLI::Option& option) {
  std::vector<std::string> names;
  for (const auto& name : option.get_snames()) names.push_back("-" + name);
  for (const auto& name : option.get_lnames()) names.push_back("--" + name);
  return names;
}

std::string argumentsText(const CLI::App& app) {
  std::string options;
  std::string arguments;
  for (const auto* option : app.get_options([](const CLI::Option*) { return true; })) {
    if (option->get_positional()) arguments += " " + positionalText(*option);
    if (option->nonpositional() && option != app.get_help_ptr()) options = " [OPTION...]";
  }
  for (const auto* group : groupsOf(app)) arguments += " (" + alternativesText(*group) + ")";
  return options + arguments;
}

Definitions positionalDefinitions(const CLI::App& app) {
  Definitions list;
  for (const auto* option : optionsOf(app)) {
    if (option->get_positional()) list.emplace_back(option->get_name(true), meaning(*option));
  }
  return list;
}

Definitions optionDefinitions(const CLI::App& app) {
  Definitions list;
  for (const auto* option : optionsOf(app)) {
    const bool shared = app.get_parent() != nullptr && option == app.get_help_ptr();
    if (option->nonpositional() && !shared) {
      list.emplace_back(optionText(*option), meaning(*option));
    }
  }
  return list;
}

}  // namespace tqstore
