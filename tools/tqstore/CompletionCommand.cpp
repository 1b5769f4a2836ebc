#include "tools/tqstore/CompletionCommand.hpp"

#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "tools/tqstore/Json.hpp"
#include "tools/tqstore/commandline/Completion.hpp"

namespace tqstore {

namespace {

constexpr const char* kCompleteWords = "complete-words";

constexpr const char* kBash =
    R"(# Completion of tqstore in bash. In ~/.bashrc: source <(tqstore completion bash)
_tqstore() {
  local kind='' candidate
  COMPREPLY=()
  {
    read -r kind
    while IFS=$'\t' read -r candidate _; do COMPREPLY+=("$candidate"); done
  } < <("${1/#\~/$HOME}" complete-words "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
  if [[ $kind == files ]]; then compopt -o default; fi
}
complete -F _tqstore tqstore)";

constexpr const char* kFish =
    R"(# Completion of tqstore in fish. In ~/.config/fish/config.fish: tqstore completion fish | source
function __tqstore_words
  set -l before (commandline -opc)
  set -l typed (commandline -ct)
  set -l program (string replace -r '^~' $HOME -- $before[1])
  set -l answer ($program complete-words $before[2..-1] "$typed" 2>/dev/null)
  if test "$answer[1]" = files
    set -l option (string match -r '^--[^=]*=' -- "$typed")
    __fish_complete_path (string replace -r '^--[^=]*=' '' -- "$typed") | string replace -r '^' -- "$option"
  else
    string join \n -- $answer[2..-1]
  end
end
complete -c tqstore -f -a '(__tqstore_words)')";

constexpr const char* kZsh = R"(#compdef tqstore
# Completion of tqstore in zsh. In ~/.zshrc, behind compinit: source <(tqstore completion zsh)
_tqstore() {
  local line
  local -a answer candidates
  answer=("${(@f)$("${(Q)words[1]/#\~/$HOME}" complete-words "${(@Q)words[2,CURRENT]}" 2>/dev/null)}")
  if [[ $answer[1] == files ]]; then
    [[ $PREFIX == --*=* ]] && compset -P '*='
    _files
    return
  fi
  for line in "${(@)answer[2,-1]}"; do
    [[ -n $line ]] && candidates+=("${${line%%$'\t'*}//:/\\:}:${line#*$'\t'}")
  done
  _describe -V 'tqstore' candidates
}
compdef _tqstore tqstore)";

const std::map<std::string, const char*>& scripts() {
  static const auto& scripts =
      *new std::map<std::string, const char*>{{"bash", kBash}, {"fish", kFish}, {"zsh", kZsh}};
  return scripts;
}

ExitStatus writeScript(const std::string& shell, bool json) {
  const auto* const script = scripts().at(shell);
  if (json) {
    writeJson({{"shell", shell}, {"script", std::string(script) + "\n"}});
  } else {
    writeLine(script);
  }
  return kDone;
}

Manual manual() {
  return {.summary = "Complete words in bash, zsh or fish",
          .description =
              "Writes a script that completes commands, options, files, products, the latest "
              "transactions and settings when you press Tab. It reads the configuration and the "
              "ledger that the words so far, or the environment, name.",
          .examples =
              " source <(tqstore completion bash)      # in ~/.bashrc\n"
              " source <(tqstore completion zsh)       # in ~/.zshrc, behind compinit\n"
              " tqstore completion fish | source       # in ~/.config/fish/config.fish\n"};
}

}  // namespace

void addCompletion(CommandLine& line) {
  const auto shell = std::make_shared<std::string>();
  auto command = line.addWithoutStore("completion", manual(), [shell, &options = line.options()] {
    return writeScript(*shell, options.json);
  });
  command.addOption("SHELL", *shell, "bash, zsh or fish").required().oneOf({"bash", "zsh", "fish"});
}

bool isAskedForWords(int argc, const char* const* argv) {
  return argc > 1 && argv[1] == std::string(kCompleteWords);
}

ExitStatus writeWords(const CommandLine& line, int argc, const char* const* argv) {
  const auto completion = complete(line, std::vector<std::string>(argv + 2, argv + argc));
  writeLine(completion.files ? "files" : "words");
  for (const auto& [word, meaning] : completion.candidates) {
    writeLine(printable(word) + "\t" + printable(meaning));
  }
  return kDone;
}

}  // namespace tqstore
