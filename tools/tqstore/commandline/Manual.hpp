#pragma once

#include <string>

namespace tqstore {

/// What `tqstore COMMAND --help` says, apart from what the command's options say of themselves.
///
/// Texts are paragraphs with an empty line between them; lines are filled to the width of the
/// terminal, except those that begin with a space.
struct Manual {
  std::string group = "Other";  ///< its heading in the list of commands
  std::string summary{};        ///< one line, without a full stop
  std::string description{};
  std::string refusal{};  ///< when the exit status is 1
  std::string examples{};
};

}  // namespace tqstore
