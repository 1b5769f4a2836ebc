#pragma once

#include <string>

#include "tools/tqstore/Console.hpp"
#include "tools/tqstore/commandline/Completion.hpp"

namespace tqstore {

/// What is being completed: the name of an argument, and the one that stands before it.
struct CompletedValue {
  std::string name;
  std::string before;
};

/// All values that an argument can have; see `complete`.
[[nodiscard]] Completion valuesOf(const CompletedValue& value, const GlobalOptions& options);

}  // namespace tqstore
