#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <functional>
#include <thread>

#include "platform/Foundation/UserDefaults.hpp"
#include "platform/embedded/Foundation/DefaultsFolder.hpp"
#include "platform/embedded/Foundation/DefaultsStore.hpp"
#include "tests/fakes/DefaultsInFolder.hpp"

namespace Foundation {
namespace {

using Object = DefaultsObject;

class DefaultsProcesses : public testing::Test {
 protected:
  // Runs `work` in a process of its own, which was no program with user defaults before.
  static pid_t start(const std::function<void()>& work) {
    const pid_t child = ::fork();
    if (child == 0) {
      work();
      std::exit(0);
    }
    return child;
  }
  static int end(pid_t child) {
    int status = 0;
    ::waitpid(child, &status, 0);
    return status;
  }
  [[nodiscard]] std::string path() const { return folder.file("shared.defaults"); }

  tests::DefaultsInFolder folder;
};

std::shared_ptr<UserDefaults> shared() { return UserDefaults::withSuiteName("shared"); }

TEST_F(DefaultsProcesses, WhatIsSynchronizedOutlivesAKill) {
  const auto child = start([] {
    shared()->set(Object::integer(1), "key");
    if (shared()->synchronize()) ::raise(SIGKILL);
  });
  EXPECT_TRUE(WIFSIGNALED(end(child)));
  EXPECT_EQ(*DefaultsStore(path()).object("key"), Object::integer(1));
}

TEST_F(DefaultsProcesses, WhatIsSetIsStoredShortlyAfterwards) {
  const auto child = start([] {
    shared()->set(Object::integer(1), "key");
    ::pause();
  });
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  bool isStored = false;
  while (!isStored && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::yield();
    isStored = DefaultsStore(path()).object("key") != nullptr;
  }
  ::kill(child, SIGKILL);
  end(child);
  EXPECT_TRUE(isStored);
}

TEST_F(DefaultsProcesses, WhatIsSetIsStoredWhenTheProgramExits) {
  EXPECT_EQ(end(start([] { shared()->set(Object::integer(1), "key"); })), 0);
  EXPECT_NE(DefaultsStore(path()).object("key"), nullptr);
}

TEST_F(DefaultsProcesses, AKillInTheMidstOfWritingDamagesNothing) {
  for (int round = 0; round < 10; ++round) {
    const auto child = start([round] {
      for (;;) {
        shared()->set(Object::data(Data(10'000, std::byte(round))), "a");
        shared()->set(Object::data(Data(10'000, std::byte(round))), "b");
        if (!shared()->synchronize()) std::exit(1);
      }
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(30 + round * 7));
    ::kill(child, SIGKILL);
    EXPECT_TRUE(WIFSIGNALED(end(child)));
    const DefaultsStore store(path());
    const auto a = store.object("a");
    const auto b = store.object("b");
    ASSERT_EQ(a == nullptr, b == nullptr);
    if (a) {
      ASSERT_EQ(*a, *b);
    }
  }
}

TEST_F(DefaultsProcesses, SeveralWriteAtTheSameTime) {
  constexpr int kProcesses = 4;
  constexpr int kKeys = 25;
  std::vector<pid_t> children;
  for (int process = 0; process < kProcesses; ++process) {
    children.push_back(start([process] {
      for (int i = 0; i < kKeys; ++i) {
        shared()->set(Object::integer(i), std::to_string(process) + "." + std::to_string(i));
        if (!shared()->synchronize()) std::exit(1);
      }
    }));
  }
  for (const auto child : children) EXPECT_EQ(end(child), 0);
  EXPECT_EQ(DefaultsStore(path()).keys().size(), std::size_t{kProcesses} * kKeys);
}

TEST_F(DefaultsProcesses, AnotherOnesChangesAreSeenAfterSynchronizing) {
  std::array<int, 2> go{};
  ASSERT_EQ(::pipe(go.data()), 0);
  const auto child = start([&] {
    char byte = 0;
    if (::read(go[0], &byte, 1) != 1) std::exit(1);
    shared()->set(Object::integer(5), "key");
    if (!shared()->synchronize()) std::exit(1);
  });
  const auto defaults = shared();
  EXPECT_EQ(defaults->object("key"), nullptr);
  ASSERT_EQ(::write(go[1], "!", 1), 1);
  EXPECT_EQ(end(child), 0);
  EXPECT_TRUE(defaults->synchronize());
  EXPECT_EQ(*defaults->object("key"), Object::integer(5));
}

}  // namespace
}  // namespace Foundation
