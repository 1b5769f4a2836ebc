#pragma once

#include "platform/embedded/Foundation/DefaultsFolder.hpp"
#include "tests/fakes/TemporaryFolder.hpp"

namespace tests {

/// A folder in which the user defaults stand, from its construction on: stores that are first used
/// afterwards begin empty. The user's own are never touched.
class DefaultsInFolder : public TemporaryFolder {
 public:
  DefaultsInFolder() { Foundation::setDefaultsFolder(path()); }
};

}  // namespace tests
