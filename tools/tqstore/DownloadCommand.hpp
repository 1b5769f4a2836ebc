#pragma once

#include "tools/tqstore/commandline/CommandLine.hpp"

namespace tqstore {

/// `tqstore download TRANSACTION [DESTINATION]`: downloads the content that the store hosts for what
/// was bought, and shows how far it has come.
void addDownload(CommandLine& line);

}  // namespace tqstore
