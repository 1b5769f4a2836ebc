#pragma once

#include <string>
#include <utility>
#include <vector>

namespace tqstore {

/// `text` in lines of at most `width` bytes (a word that is longer stands alone), each after
/// `indent` spaces and with a line feed. Empty lines stay between paragraphs, and lines that begin
/// with a space stay as they are, without it.
[[nodiscard]] std::string filled(const std::string& text, int indent, int width);

using Definitions = std::vector<std::pair<std::string, std::string>>;

/// Terms with what they mean beside them, in one column; below them, where a term is too long.
[[nodiscard]] std::string listed(const Definitions& definitions, int indent, int width);

}  // namespace tqstore
