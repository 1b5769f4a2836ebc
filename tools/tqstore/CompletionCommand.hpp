#pragma once

#include "tools/tqstore/commandline/CommandLine.hpp"

namespace tqstore {

/// `tqstore completion SHELL`: writes a script that completes the words of a command line. The
/// script asks `tqstore complete-words WORD...` for them.
void addCompletion(CommandLine& line);

/// True when the program was started by such a script.
[[nodiscard]] bool isAskedForWords(int argc, const char* const* argv);

/// Answers the script: "files" or "words" on a line, then the candidates, each with a tab and a
/// few words on it. The last argument is the word that is being typed.
[[nodiscard]] ExitStatus writeWords(const CommandLine& line, int argc, const char* const* argv);

}  // namespace tqstore
