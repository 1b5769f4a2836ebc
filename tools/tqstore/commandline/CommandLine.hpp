#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/embedded/store/StoreSession.hpp"
#include "tools/tqstore/Console.hpp"
#include "tools/tqstore/commandline/CommandOptions.hpp"
#include "tools/tqstore/commandline/Manual.hpp"

namespace CLI {
class App;
class Success;
}  // namespace CLI

namespace tqstore {

/// The program's commands and the options that all of them share.
///
///     void addApprove(CommandLine& line) {
///       const auto transaction = std::make_shared<std::string>();
///       auto command = line.add("approve", {.summary = "..."},
///                               [=, &options = line.options()](auto& session) { ... });
///       command.addOption("TRANSACTION", *transaction, "...").required();
///     }
class CommandLine {
 public:
  using Run = std::function<ExitStatus()>;
  using RunOnStore = std::function<ExitStatus(StoreKit::StoreSession&)>;

  struct Command {
    std::string name{};
    CLI::App* app = nullptr;
    Manual manual{};
    bool opensLedger = false;
    Run run{};
  };

  /// `manual` is the program's own.
  explicit CommandLine(Manual manual);
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;
  ~CommandLine();

  /// Adds a command that works on the open store. When the store cannot be opened, the program says
  /// why and ends with `kUsage`.
  CommandOptions add(const std::string& name, Manual manual, RunOnStore run);

  /// Adds a command that opens the ledger itself, and no store on it.
  CommandOptions addOnLedger(const std::string& name, Manual manual, Run run);

  /// Adds a command that opens no store, and may be used without a configuration.
  CommandOptions addWithoutStore(const std::string& name, Manual manual, Run run);

  /// What was given, once the command runs.
  [[nodiscard]] const GlobalOptions& options() const { return options_; }

  [[nodiscard]] const Manual& manual() const { return manual_; }
  /// The program itself, and its commands in the order in which they were added.
  [[nodiscard]] const CLI::App& app() const { return *app_; }
  [[nodiscard]] const std::vector<Command>& commands() const { return commands_; }

  /// Reads the arguments and runs the command that they name.
  [[nodiscard]] ExitStatus run(int argc, const char* const* argv);

 private:
  void addOptions();
  [[nodiscard]] ExitStatus writeAnswer(const CLI::Success& answer);
  CommandOptions add(Command command);

  Manual manual_;
  std::unique_ptr<CLI::App> app_;
  GlobalOptions options_;
  std::vector<Command> commands_;
};

}  // namespace tqstore
