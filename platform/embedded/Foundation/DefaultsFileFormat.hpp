#pragma once

#include <string>

namespace Foundation {

/// Makes an empty file of user defaults at `path`, and the folders above, unless something is there
/// already. It appears whole or not at all, whoever else does the same. Says what went wrong.
[[nodiscard]] std::string makeDefaultsFile(const std::string& path);

/// Why the file at `path` is not one of user defaults that we know how to read, as far as its first
/// bytes tell; empty when it is. Only reads.
[[nodiscard]] std::string defaultsHeaderProblem(const std::string& path);

}  // namespace Foundation
