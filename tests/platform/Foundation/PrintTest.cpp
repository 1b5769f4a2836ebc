#include "platform/Foundation/Print.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <vector>

#include "tests/fakes/CapturedError.hpp"

namespace Foundation {
namespace {

class Print : public testing::Test {
 protected:
  ~Print() override { setPrintHandler({}); }
};

std::string standardOutputOf(const std::function<void()>& action) {
  testing::internal::CaptureStdout();
  action();
  return testing::internal::GetCapturedStdout();
}

TEST_F(Print, GoesToStandardOutputWithALineBreak) {
  EXPECT_EQ(standardOutputOf([] { print("first"); }), "first\n");
}

TEST_F(Print, KeepsTheMessageToTheLetter) {
  const std::string message("50% off\n\ttwo lines, a zero\0byte", 31);
  EXPECT_EQ(standardOutputOf([&] { print(message); }), message + "\n");
}

TEST_F(Print, EmptyMessageIsAnEmptyLine) {
  EXPECT_EQ(standardOutputOf([] { print(""); }), "\n");
}

// Sends standard output through a pipe, fully buffered, and gives what arrived at the other end
// before anybody but `action` flushed it.
std::string arrivedAfter(const std::function<void()>& action) {
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) return "no pipe";
  std::fflush(stdout);
  const int before = ::dup(STDOUT_FILENO);
  ::dup2(ends[1], STDOUT_FILENO);
  std::setvbuf(stdout, nullptr, _IOFBF, BUFSIZ);
  action();
  ::dup2(before, STDOUT_FILENO);
  ::close(before);
  ::close(ends[1]);
  std::array<char, 64> bytes{};
  const auto count = ::read(ends[0], bytes.data(), bytes.size());
  ::close(ends[0]);
  return {bytes.data(), static_cast<std::size_t>(count)};
}

TEST_F(Print, IsFlushedAtOnce) {
  EXPECT_EQ(arrivedAfter([] { print("now"); }), "now\n");
}

TEST_F(Print, HandlerGetsTheMessageWithoutTheLineBreak) {
  std::vector<std::string> messages;
  setPrintHandler([&](std::string_view message) { messages.emplace_back(message); });
  const auto output = standardOutputOf([] { print("one\ntwo"); });
  EXPECT_EQ(messages, (std::vector<std::string>{"one\ntwo"}));
  EXPECT_EQ(output, "");
}

TEST_F(Print, EmptyHandlerBringsStandardOutputBack) {
  setPrintHandler([](std::string_view) {});
  setPrintHandler({});
  EXPECT_EQ(standardOutputOf([] { print("back"); }), "back\n");
}

TEST_F(Print, HandlerMayPrint) {
  std::vector<std::string> messages;
  setPrintHandler([&](std::string_view message) {
    messages.emplace_back(message);
    if (message == "outer") print("inner");
  });
  print("outer");
  EXPECT_EQ(messages, (std::vector<std::string>{"outer", "inner"}));
}

TEST_F(Print, HandlerMayReplaceItself) {
  std::vector<std::string> messages;
  setPrintHandler([&messages, tag = std::string(100, 'a')](std::string_view) {
    setPrintHandler([&messages](std::string_view message) {
      messages.push_back("second " + std::string(message));
    });
    messages.push_back("first " + tag.substr(0, 1));
  });
  print("1");
  print("2");
  EXPECT_EQ(messages, (std::vector<std::string>{"first a", "second 2"}));
}

TEST_F(Print, HandlerThatIsThrownAwayMayPrint) {
  struct PrintsAtTheEnd {
    ~PrintsAtTheEnd() { print("gone"); }
  };
  std::vector<std::string> messages;
  setPrintHandler([owned = std::make_shared<PrintsAtTheEnd>()](std::string_view) {});
  setPrintHandler([&](std::string_view message) { messages.emplace_back(message); });
  EXPECT_EQ(messages, (std::vector<std::string>{"gone"}));
}

TEST_F(Print, WarningsGoToStandardErrorOnly) {
  bool handled = false;
  setPrintHandler([&](std::string_view) { handled = true; });
  tests::CapturedError error;
  warn("odd");
  EXPECT_EQ(error.text(), "odd\n");
  EXPECT_FALSE(handled);
}

TEST(PrintDeathTest, FatalErrorSaysItsMessageAndAborts) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  EXPECT_EXIT(fatalError("no product"), testing::KilledBySignal(SIGABRT),
              testing::Matcher<const std::string&>("Fatal error: no product\n"));
}

}  // namespace
}  // namespace Foundation
