#include "platform/embedded/store/ledger/OwnerLock.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <thread>

#include "tests/fakes/TemporaryFolder.hpp"
#include "tests/platform/embedded/store/ledger/ChildProcess.hpp"

namespace tests {
namespace {

using StoreKit::detail::OwnerLock;

// Until a thread of this program waits for a lock: the kernel's list then has an arrow there. Where
// it has none, the test goes on after two seconds, and may find out less.
void waitForAWaiter() {
  const auto program = " " + std::to_string(::getpid()) + " ";
  const auto isWaiter = [&](const std::string& line) {
    return line.find("->") != line.npos && line.find(program) != line.npos;
  };
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
  for (bool waits = false; !waits && std::chrono::steady_clock::now() < end;) {
    std::ifstream locks("/proc/locks");
    for (std::string line; std::getline(locks, line);) waits = waits || isWaiter(line);
  }
}

class OwnerLockFile : public testing::Test {
 protected:
  bool isThere(int owner) const {
    return std::filesystem::exists(path + "-owner-" + std::to_string(owner));
  }
  // As a program does that dies without letting go of anything.
  void dieAs(int owner) const {
    EXPECT_EQ(inChild([&] {
                const OwnerLock lock(path, owner);
                ::raise(SIGKILL);
                return 0;
              }),
              -1);
  }

  TemporaryFolder folder;
  std::string path = folder.file("shop.ledger");
};

TEST_F(OwnerLockFile, LivesAsLongAsItsOwner) {
  const OwnerLock observer(path, 1);
  std::optional<OwnerLock> other(std::in_place, path, 2);
  EXPECT_TRUE(observer.isAlive(2));

  other.reset();

  EXPECT_FALSE(observer.isAlive(2));
  EXPECT_FALSE(isThere(2));
}

TEST_F(OwnerLockFile, TheOwnerItselfIsAlive) {
  EXPECT_TRUE(OwnerLock(path, 1).isAlive(1));
  EXPECT_TRUE(OwnerLock(":memory:", 1).isAlive(1));
}

TEST_F(OwnerLockFile, NobodyElseIsAliveInMemory) {
  EXPECT_FALSE(OwnerLock(":memory:", 1).isAlive(2));
}

TEST_F(OwnerLockFile, AnOwnerThatNeverWasIsNotAlive) {
  EXPECT_FALSE(OwnerLock(path, 1).isAlive(7));
}

// What belongs to a living program must not be taken from it.
TEST_F(OwnerLockFile, AnOwnerWhoseFileCannotBeOpenedCountsAsAlive) {
  const OwnerLock observer(path, 1);
  std::filesystem::create_directory(path + "-owner-7");
  EXPECT_TRUE(observer.isAlive(7));
}

TEST_F(OwnerLockFile, ThatIsReplacedWhileItWaitsIsLockedAnew) {
  const auto file = path + "-owner-2";
  const int other = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  ASSERT_EQ(::flock(other, LOCK_EX), 0);
  std::optional<OwnerLock> lock;
  std::thread waiting([&] { lock.emplace(path, 2); });
  waitForAWaiter();

  ::unlink(file.c_str());
  std::ofstream{file};
  ::close(other);
  waiting.join();

  EXPECT_TRUE(OwnerLock(path, 1).isAlive(2));
}

TEST_F(OwnerLockFile, AKilledOwnerIsNotAliveAndItsFileGoesAway) {
  const OwnerLock observer(path, 1);
  dieAs(2);
  ASSERT_TRUE(isThere(2));

  EXPECT_FALSE(observer.isAlive(2));

  EXPECT_FALSE(isThere(2));
}

TEST_F(OwnerLockFile, ANewOwnerSweepsAwayTheFilesOfTheDeadOnly) {
  const OwnerLock living(path, 1);
  dieAs(2);
  dieAs(13);

  const OwnerLock newcomer(path, 14);

  EXPECT_TRUE(isThere(1));
  EXPECT_FALSE(isThere(2));
  EXPECT_FALSE(isThere(13));
}

TEST_F(OwnerLockFile, AskingAboutALivingOwnerDoesNotDisturbIt) {
  const OwnerLock living(path, 1);
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(OwnerLock(path, 2).isAlive(1));
}

TEST_F(OwnerLockFile, OwnersOfAnotherLedgerInTheFolderAreLeftAlone) {
  write(folder.file("other.ledger-owner-3"), "");

  const OwnerLock lock(path, 1);

  EXPECT_TRUE(std::filesystem::exists(folder.file("other.ledger-owner-3")));
}

}  // namespace
}  // namespace tests
