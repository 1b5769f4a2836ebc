#pragma once

#include <string>

namespace CLI {
class ParseError;
}  // namespace CLI

namespace tqstore {

class CommandLine;

/// What a person is told about words that `line` does not understand: what is wrong, and where help
/// is. `error` is what its parser refused them with.
[[nodiscard]] std::string usageProblem(const CommandLine& line, const CLI::ParseError& error);

}  // namespace tqstore
