#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <thread>
#include <vector>

#include "platform/Foundation/Print.hpp"

namespace Foundation {
namespace {

TEST(PrintThreads, MessagesAreNotMixedWithEachOther) {
  testing::internal::CaptureStdout();
  std::vector<std::thread> threads;
  for (const char letter : {'a', 'b', 'c', 'd'}) {
    threads.emplace_back([letter] {
      for (int i = 0; i < 100; ++i) print(std::string(300, letter));
    });
  }
  for (auto& thread : threads) thread.join();
  std::istringstream output(testing::internal::GetCapturedStdout());
  int lines = 0;
  for (std::string line; std::getline(output, line); ++lines) {
    ASSERT_EQ(line, std::string(300, line.at(0)));
  }
  EXPECT_EQ(lines, 400);
}

TEST(PrintThreads, HandlerMayChangeWhileOthersPrint) {
  std::thread printer([] {
    for (int i = 0; i < 1000; ++i) print("message");
  });
  for (int i = 0; i < 1000; ++i) setPrintHandler([text = std::string(50, 'x')](auto) {});
  testing::internal::CaptureStdout();
  printer.join();
  setPrintHandler({});
  (void)testing::internal::GetCapturedStdout();
}

}  // namespace
}  // namespace Foundation
