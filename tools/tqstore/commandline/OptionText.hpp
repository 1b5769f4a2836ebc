#pragma once

#include <string>
#include <vector>

#include "tools/tqstore/commandline/TextLayout.hpp"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace tqstore {

/// The options and positional arguments of a command, with those of its option groups.
[[nodiscard]] std::vector<const CLI::Option*> optionsOf(const CLI::App& app);

/// The groups of options and arguments of a command of which one is to be given.
[[nodiscard]] std::vector<const CLI::App*> groupsOf(const CLI::App& app);

/// What such a group has: "TRANSACTION | --all".
[[nodiscard]] std::string alternativesText(const CLI::App& group);

/// True for an option that is followed by a value.
[[nodiscard]] bool takesValue(const CLI::Option& option);

/// True for a positional argument that may be given more than once.
[[nodiscard]] bool isList(const CLI::Option& option);

/// The names of an option: "-h" and "--help".
[[nodiscard]] std::vector<std::string> namesOf(const CLI::Option& option);

/// What stands behind a command in its synopsis: "[OPTION...] PRODUCT", "(TRANSACTION | --all)".
[[nodiscard]] std::string argumentsText(const CLI::App& app);

/// The positional arguments of a command and the options, each with its meaning; of a command
/// without --help, which all have.
[[nodiscard]] Definitions positionalDefinitions(const CLI::App& app);
[[nodiscard]] Definitions optionDefinitions(const CLI::App& app);

}  // namespace tqstore
