#include "platform/embedded/store/ledger/LedgerWatch.hpp"

#include <gmock/gmock.h>

#include <chrono>
#include <condition_variable>
#include <ctime>
#include <mutex>
#include <thread>

#include "tests/fakes/TemporaryFolder.hpp"
#include "tests/platform/embedded/store/ledger/ChildProcess.hpp"
#include "tests/platform/embedded/store/ledger/LedgerSamples.hpp"

namespace tests {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// Ten times what is promised, for machines that are busy with something else.
constexpr auto kLongEnough = 1s;

// Calls from the watching thread, to be waited for.
class Calls {
 public:
  void operator()() {
    const std::lock_guard lock(mutex_);
    ++count_;
    changed_.notify_all();
  }
  bool reach(int count, std::chrono::milliseconds patience) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, patience, [&] { return count_ >= count; });
  }
  int count() {
    const std::lock_guard lock(mutex_);
    return count_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  int count_ = 0;
};

class LedgerWatch : public testing::Test {
 protected:
  void SetUp() override {
    ledger->watch([this] { calls(); });
    ASSERT_TRUE(calls.reach(1, 10s));  // the first look is a change
  }

  TemporaryFolder folder;
  std::string path = folder.file("shop.ledger");
  Calls calls;
  std::unique_ptr<SqliteLedger> ledger = openLedger(path);
  ChildProgram neighbour{{LEDGER_NEIGHBOUR, path}};
};

TEST_F(LedgerWatch, TellsOfTheChangeOfAnotherProgramAtOnce) {
  ASSERT_EQ(neighbour.ask("states"), "");
  std::this_thread::sleep_for(50ms);  // its opening was a change as well
  const auto before = calls.count();
  auto fastest = Clock::duration::max();
  for (int i = 1; i <= 5; ++i) {
    ASSERT_EQ(neighbour.ask("add gems"), std::to_string(i));
    const auto begin = Clock::now();
    ASSERT_TRUE(calls.reach(before + i, kLongEnough));
    fastest = std::min(fastest, Clock::now() - begin);
  }
  EXPECT_LT(fastest, 100ms);
}

TEST_F(LedgerWatch, CostsNextToNothingWhileNothingHappens) {
  const auto begin = std::clock();

  std::this_thread::sleep_for(1s);

  const auto seconds = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
  EXPECT_LT(seconds, 0.05);
}

TEST_F(LedgerWatch, BringsTheLogIntoTheFileWhenNothingHappens) {
  addTo(*ledger, {entry("gems")});
  const auto log = path + "-wal";
  ASSERT_LT(0U, std::filesystem::file_size(log));

  const auto end = Clock::now() + 10s;
  while (std::filesystem::file_size(log) > 0 && Clock::now() < end)
    std::this_thread::sleep_for(10ms);

  EXPECT_EQ(std::filesystem::file_size(log), 0U);
  EXPECT_THAT(products(ledger->all()), testing::ElementsAre("gems"));
}

TEST_F(LedgerWatch, ALogThatIsNeverIdleDoesNotGrowWithoutEnd) {
  const LedgerEntries batch(200, entry("gems"));
  std::uintmax_t longest = 0;

  for (int i = 0; i < 600; ++i) {  // 37 MiB in all
    addTo(*ledger, batch);
    longest = std::max(longest, std::filesystem::file_size(path + "-wal"));
  }

  EXPECT_LT(longest, 20U << 20U);
}

TEST_F(LedgerWatch, EndsWithTheLedgerAndIsSilentThen) {
  const auto begin = Clock::now();

  ledger.reset();

  EXPECT_LT(Clock::now() - begin, kLongEnough);
  const auto before = calls.count();
  ASSERT_EQ(neighbour.ask("add gems"), "1");
  EXPECT_FALSE(calls.reach(before + 1, 100ms));
}

}  // namespace
}  // namespace tests
