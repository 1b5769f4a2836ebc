#pragma once

#include <string>

namespace CLI {
class App;
}  // namespace CLI

namespace tqstore {

class CommandLine;

/// `--help`, of the program or of the command that `app` is, in the sections that manual pages have.
[[nodiscard]] std::string helpText(const CommandLine& line, const CLI::App& app);

}  // namespace tqstore
