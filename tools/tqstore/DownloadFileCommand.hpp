#pragma once

#include "tools/tqstore/commandline/CommandLine.hpp"

namespace tqstore {

/// `tqstore download-file URL [DESTINATION]`: downloads to a file and shows how far it has come.
void addDownloadFile(CommandLine& line);

}  // namespace tqstore
