#pragma once

#include <string>
#include <vector>

#include "tools/tqstore/commandline/CommandLine.hpp"
#include "tools/tqstore/commandline/TextLayout.hpp"

namespace tqstore {

/// What may stand in place of a word that is being typed.
struct Completion {
  bool files = false;        ///< any file name
  Definitions candidates{};  ///< each with a few words on it, which may be none
};

/// Completes the last of the words behind the program's name; it may be empty. Commands, options,
/// and what is named PRODUCT, TRANSACTION, KEY, VALUE or SHELL have candidates; what is named FILE,
/// FOLDER, DESTINATION or CONTENT is a file.
///
/// Transactions are the unfinished ones and those that changed last: cheap in a ledger of any size.
/// The configuration and the ledger are those that the words or the environment name; what is not
/// there or cannot be read has no candidates.
[[nodiscard]] Completion complete(const CommandLine& line, const std::vector<std::string>& words);

}  // namespace tqstore
