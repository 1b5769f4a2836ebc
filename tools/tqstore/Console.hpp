#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tqstore {

/// Exit statuses of every command.
enum ExitStatus : int {
  kDone = 0,
  kRefused = 1,  ///< the store said no
  kUsage = 2,    ///< wrong usage, or input that cannot be read
};

/// What all commands share.
struct GlobalOptions {
  std::string config;
  std::string ledger;  ///< empty: the configuration's own
  std::string locale;  ///< empty: the configuration's
  bool json = false;
};

/// Writes a line to standard output at once, so that it stands in order with everything else. The
/// first that cannot be written is complained of.
void writeLine(std::string_view line);

/// True once a line could not be written: what goes on for ever to show something has no reason to.
[[nodiscard]] bool outputIsLost();

/// Writes "tqstore: MESSAGE" to standard error.
void complain(std::string_view message);

/// The colours of a terminal; without effect when standard output is none or NO_COLOR is set.
enum class Style { bold, green, red, dim };
[[nodiscard]] std::string styled(std::string_view text, Style style);

/// Columns that standard output shows: the terminal's, else `fallback`.
[[nodiscard]] int terminalWidth(int fallback);

/// "1 product", "2 products".
[[nodiscard]] std::string counted(std::size_t count, const std::string& what);

/// `text` with control characters and what is no UTF-8 made visible, so that a product's name cannot
/// drive the terminal.
[[nodiscard]] std::string printable(std::string_view text);

}  // namespace tqstore
