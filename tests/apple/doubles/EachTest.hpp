#pragma once

#include <functional>

namespace tests {

/// Doubles that exist once in a process say here how they forget what a test did to them.
void beforeEachTest(std::function<void()> forget);

/// Makes all of them forget, and the system be the newest.
void forgetLastTest();

}  // namespace tests
