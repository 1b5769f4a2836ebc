#pragma once

#include "tools/tqstore/commandline/CommandLine.hpp"

namespace tqstore {

/// `tqstore launch`: starts as an application does, and shows what the launch-time completion is
/// given until the queue is quiet; with --watch, until the program is interrupted.
void addLaunch(CommandLine& line);

}  // namespace tqstore
