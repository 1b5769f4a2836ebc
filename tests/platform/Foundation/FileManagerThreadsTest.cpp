#include <gtest/gtest.h>

#include <barrier>
#include <thread>

#include "platform/Foundation/FileManager.hpp"
#include "tests/fakes/TemporaryFolder.hpp"

namespace Foundation {
namespace {

// Two files set out for one place at the same moment: one arrives, the other stays where it is.
TEST(FileManagerThreads, OfTwoMovesToOnePlaceOneFails) {
  const tests::TemporaryFolder folder;
  const auto url = [&folder](const std::string& name) {
    return URL::fileURLWithPath(folder.file(name));
  };
  std::barrier start(2);
  bool hasFailed[2] = {};
  const auto move = [&](int mover, int round) {
    start.arrive_and_wait();
    const auto from = url(std::to_string(mover) + "-" + std::to_string(round));
    const auto to = url("to-" + std::to_string(round));
    hasFailed[mover] = FileManager::defaultManager().moveItem(from, to).has_value();
  };
  for (int round = 0; round < 300; ++round) {
    tests::write(folder.file("0-" + std::to_string(round)), "0");
    tests::write(folder.file("1-" + std::to_string(round)), "1");
    std::thread other(move, 1, round);
    move(0, round);
    other.join();
    ASSERT_NE(hasFailed[0], hasFailed[1]) << "in round " << round;
  }
}

}  // namespace
}  // namespace Foundation
