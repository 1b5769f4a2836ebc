#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace tqstore {

class CommandLine;

/// `--help`, of the program and of each command, in the sections that manual pages have.
class HelpFormatter final : public CLI::FormatterBase {
 public:
  /// `line` must live as long as this.
  explicit HelpFormatter(const CommandLine& line) : line_(line) {}

  [[nodiscard]] std::string make_help(  // NOLINT(readability-identifier-naming): CLI11's name
      const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override;

 private:
  const CommandLine& line_;
};

}  // namespace tqstore
