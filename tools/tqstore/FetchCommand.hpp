#pragma once

#include "tools/tqstore/commandline/CommandLine.hpp"

namespace tqstore {

/// `tqstore fetch URL`: loads what is behind an address and writes it to standard output.
void addFetch(CommandLine& line);

}  // namespace tqstore
