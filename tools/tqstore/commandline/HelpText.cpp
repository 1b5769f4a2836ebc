#include "tools/tqstore/commandline/HelpText.hpp"

#include <algorithm>

#include "tools/tqstore/commandline/CommandLine.hpp"
#include "tools/tqstore/commandline/OptionText.hpp"

namespace tqstore {

namespace {

constexpr int kIndent = 2;
constexpr int kWidth = 80;
constexpr int kWidest = 100;

int width() { return std::min(terminalWidth(kWidth), kWidest); }

std::string section(const std::string& title, const std::string& body) {
  return body.empty() ? "" : "\n" + styled(title, Style::bold) + "\n" + body;
}

std::string textSection(const std::string& title, const std::string& text) {
  return section(title, filled(text, kIndent, width()));
}

std::string listSection(const std::string& title, const Definitions& definitions) {
  return section(title, listed(definitions, kIndent, width()));
}

std::string exitStatus(const std::string& refusal) {
  Definitions list = {{"0", "Done."}, {"2", "Wrong usage, or input that cannot be read."}};
  if (!refusal.empty()) list.insert(list.begin() + 1, {"1", refusal});
  return listSection("EXIT STATUS", list);
}

std::string environment(bool withLedger) {
  Definitions list = {{"NO_COLOR", "When it is set, a terminal gets no colours."},
                      {"LC_ALL, LC_MESSAGES, LANG", "The language of periods: \"1 month\"."}};
  if (withLedger) {
    list.insert(list.begin(),
                {{"TQSTORE_CONFIG", "The configuration, when --config is not given."},
                 {"TQSTORE_LEDGER", "The ledger, when --ledger is not given."},
                 {"XDG_STATE_HOME", "The state folder; without it, ~/.local/state."}});
  }
  return listSection("ENVIRONMENT", list);
}

std::string files(bool withLedger) {
  if (!withLedger) return "";
  return listSection(
      "FILES", {{"STATE/tqstore/NAME-FINGERPRINT.ledger",
                 "The ledger of the configuration NAME.storekit, in the state folder. It is "
                 "made when it is missing. Beside it stand a log and locks, whose names begin "
                 "with its own; remove them together, and only when no program has it open."}});
}

std::string commandList(const CommandLine& line) {
  std::vector<std::string> groups;
  for (const auto& command : line.commands()) {
    const auto& group = command.manual.group;
    if (std::find(groups.begin(), groups.end(), group) == groups.end()) groups.push_back(group);
  }
  std::string text;
  for (const auto& group : groups) {
    Definitions commands;
    for (const auto& command : line.commands()) {
      if (command.manual.group != group) continue;
      commands.emplace_back(command.name, command.manual.summary + ".");
    }
    text += (text.empty() ? "" : "\n") + filled(group, kIndent, width()) +
            listed(commands, 2 * kIndent, width());
  }
  return text;
}

std::string programHelp(const CommandLine& line) {
  const auto& manual = line.manual();
  return styled("NAME", Style::bold) + "\n" +
         filled("tqstore - " + manual.summary, kIndent, width()) +
         textSection("SYNOPSIS", " tqstore [OPTION...] COMMAND [ARGUMENT...]") +
         textSection("DESCRIPTION", manual.description) + section("COMMANDS", commandList(line)) +
         listSection("OPTIONS", optionDefinitions(line.app())) + exitStatus(manual.refusal) +
         environment(true) + files(true) + textSection("EXAMPLES", manual.examples);
}

std::string commandHelp(const CommandLine& line, const CommandLine::Command& command) {
  const auto& app = *command.app;
  const auto& manual = command.manual;
  return styled("NAME", Style::bold) + "\n" +
         filled("tqstore " + command.name + " - " + manual.summary, kIndent, width()) +
         textSection("SYNOPSIS", " tqstore [OPTION...] " + command.name + argumentsText(app)) +
         textSection("DESCRIPTION", manual.description) +
         listSection("ARGUMENTS", positionalDefinitions(app)) +
         listSection("OPTIONS", optionDefinitions(app)) +
         listSection("OPTIONS OF EVERY COMMAND", optionDefinitions(line.app())) +
         exitStatus(manual.refusal) + environment(command.opensLedger) +
         files(command.opensLedger) + textSection("EXAMPLES", manual.examples);
}

}  // namespace

std::string helpText(const CommandLine& line, const CLI::App& app) {
  for (const auto& command : line.commands()) {
    if (command.app == &app) return commandHelp(line, command);
  }
  return programHelp(line);
}

}  // namespace tqstore
