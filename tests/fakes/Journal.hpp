#pragma once

#include <memory>
#include <string>
#include <vector>

namespace TQStoreKitLib::tests {

/// What happened, one line each. Doubles that share one journal show the order between them.
using Journal = std::vector<std::string>;
using JournalPtr = std::shared_ptr<Journal>;

inline JournalPtr aJournal() { return std::make_shared<Journal>(); }

}  // namespace TQStoreKitLib::tests
