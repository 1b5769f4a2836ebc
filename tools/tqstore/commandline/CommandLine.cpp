#include "tools/tqstore/commandline/CommandLine.hpp"

#include <CLI/CLI.hpp>
#include <sstream>
#include <utility>

#include "platform/Foundation/Print.hpp"
#include "tools/tqstore/StoreOpening.hpp"
#include "tools/tqstore/commandline/HelpText.hpp"
#include "tools/tqstore/commandline/UsageProblem.hpp"

namespace tqstore {

CommandLine::CommandLine(Manual manual)
    : manual_(std::move(manual)), app_(std::make_unique<CLI::App>(manual_.summary, "tqstore")) {
  addOptions();
  app_->require_subcommand(0, 1);  // without one, what is wrong is said here
  app_->fallthrough();
  app_->formatter_fn([this](const CLI::App* app, const std::string& /*name*/,
                            CLI::AppFormatMode /*mode*/) { return helpText(*this, *app); });
}

CommandLine::~CommandLine() = default;

void CommandLine::addOptions() {
  CommandOptions options(*app_);
  options.addOption("--config", options_.config, "The .storekit configuration that the store opens")
      .environmentVariable("TQSTORE_CONFIG")
      .valueName("FILE");
  options
      .addOption("--ledger", options_.ledger,
                 "Where the transactions are kept, or :memory:; without it each configuration has "
                 "a file of its own in your state folder")
      .environmentVariable("TQSTORE_LEDGER")
      .valueName("FILE");
  options
      .addOption("--locale", options_.locale,
                 "Language and region of products and prices in this run, whatever is set")
      .valueName("LOCALE");
  options.addFlag("--json", options_.json,
                  "One JSON object a line on standard output, nothing else");
  app_->set_help_flag("-h,--help", "Show this and end");
  app_->set_version_flag("--version", "tqstore " TQSTORE_VERSION, "Show the version and end");
}

CommandOptions CommandLine::add(Command command) {
  command.app = app_->add_subcommand(command.name, command.manual.summary);
  commands_.push_back(std::move(command));
  return CommandOptions(*commands_.back().app);
}

CommandOptions CommandLine::add(const std::string& name, Manual manual, RunOnStore run) {
  auto runOpened = [this, run = std::move(run)] {
    const auto session = openStore(options_);
    return session ? run(*session) : kUsage;
  };
  return add({.name = name,
              .manual = std::move(manual),
              .opensLedger = true,
              .run = std::move(runOpened)});
}

CommandOptions CommandLine::addOnLedger(const std::string& name, Manual manual, Run run) {
  return add(
      {.name = name, .manual = std::move(manual), .opensLedger = true, .run = std::move(run)});
}

CommandOptions CommandLine::addWithoutStore(const std::string& name, Manual manual, Run run) {
  return add({.name = name, .manual = std::move(manual), .run = std::move(run)});
}

ExitStatus CommandLine::run(int argc, const char* const* argv) {
  try {
    app_->parse(argc, argv);
  } catch (const CLI::Success& answer) {
    return writeAnswer(answer);
  } catch (const CLI::ParseError& error) {
    complain(usageProblem(*this, error));
    return kUsage;
  }
  // Standard output is the tool's own.
  Foundation::setPrintHandler([](std::string_view message) { Foundation::warn(message); });
  for (const auto& command : commands_) {
    if (command.app->parsed()) return command.run();
  }
  complain("no command; tqstore --help lists them");
  return kUsage;
}

// --help or --version.
ExitStatus CommandLine::writeAnswer(const CLI::Success& answer) {
  std::ostringstream text;
  app_->exit(answer, text);
  auto lines = text.str();
  if (lines.ends_with('\n')) lines.pop_back();
  writeLine(lines);
  return kDone;
}

}  // namespace tqstore
