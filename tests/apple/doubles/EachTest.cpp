#include "tests/apple/doubles/EachTest.hpp"

#include <utility>
#include <vector>

#include "tests/apple/doubles/SystemVersion.hpp"

namespace tests {

namespace {

std::vector<std::function<void()>>& memories() {
  static auto& memories = *new std::vector<std::function<void()>>;
  return memories;
}

}  // namespace

void beforeEachTest(std::function<void()> forget) { memories().push_back(std::move(forget)); }

void forgetLastTest() {
  playSystem(99, 0);
  for (const auto& forget : memories()) forget();
}

}  // namespace tests
