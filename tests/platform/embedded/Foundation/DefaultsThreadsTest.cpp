#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "TQStoreKitLib/utilities/CodableDefaults.hpp"
#include "TQStoreKitLib/utilities/OptionalString.hpp"
#include "platform/embedded/Foundation/DefaultsFolder.hpp"
#include "platform/embedded/Foundation/DefaultsStore.hpp"
#include "tests/fakes/DefaultsInFolder.hpp"

namespace Foundation {
namespace {

constexpr int kThreads = 4;
constexpr int kRounds = 200;

void onThreads(const std::function<void(int)>& work) {
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int i = 0; i < kThreads; ++i) threads.emplace_back(work, i);
  for (auto& thread : threads) thread.join();
}

class DefaultsThreads : public testing::Test {
 protected:
  tests::DefaultsInFolder folder;
};

TEST_F(DefaultsThreads, EachChangeOfEachThreadIsStored) {
  auto& defaults = UserDefaults::standardUserDefaults();
  onThreads([&](int thread) {
    for (int i = 0; i < kRounds; ++i) {
      defaults.set(DefaultsObject::integer(i), std::to_string(thread) + "." + std::to_string(i));
      if (i % 50 == 0) {
        EXPECT_TRUE(defaults.synchronize());
      }
    }
  });
  ASSERT_TRUE(defaults.synchronize());
  EXPECT_EQ(DefaultsStore(folder.file(programName() + ".defaults")).keys().size(),
            std::size_t{kThreads} * kRounds);
}

TEST_F(DefaultsThreads, ReadersSeeWholeValues) {
  auto& defaults = UserDefaults::standardUserDefaults();
  setCodable(defaults, std::vector<int>(50, 0), "key");
  onThreads([&](int thread) {
    for (int i = 0; i < kRounds; ++i) {
      if (thread % 2 == 0) {
        setCodable(defaults, std::vector<int>(50, i), "key");
      } else {
        const auto value = codable<std::vector<int>>(defaults, "key");
        ASSERT_TRUE(value);
        EXPECT_EQ(*value, std::vector<int>(50, value->front()));
      }
      (void)defaults.keys();
    }
  });
}

TEST_F(DefaultsThreads, TheFirstUseMayBeOnSeveral) {
  std::atomic<UserDefaults*> first = nullptr;
  onThreads([&](int) {
    auto& defaults = UserDefaults::standardUserDefaults();
    UserDefaults* expected = nullptr;
    const bool isFirst = first.compare_exchange_strong(expected, &defaults);
    EXPECT_TRUE(isFirst || expected == &defaults);
    defaults.set(DefaultsObject::boolean(true), "key");
  });
}

TEST_F(DefaultsThreads, SuitesCanBeUsedOnSeveral) {
  onThreads([](int thread) {
    for (int i = 0; i < 20; ++i) {
      const auto suite = UserDefaults::withSuiteName("suite." + std::to_string(i % 3));
      suite->set(DefaultsObject::integer(thread), "key");
      EXPECT_TRUE(suite->synchronize());
    }
  });
}

TEST(OptionalStringThreads, ConversionsRunOnSeveralThreadsAtOnce) {
  onThreads([](int) {
    for (int i = 0; i < 20; ++i) {
      EXPECT_EQ(TQStoreKitLib::toDate("2020-01-02", "yyyy-MM-dd"), Date::sinceEpoch(1577923200));
      EXPECT_EQ(TQStoreKitLib::dateMs("1000"), Date::sinceEpoch(1));
      EXPECT_TRUE(TQStoreKitLib::valueBool("YES"));
    }
  });
}

}  // namespace
}  // namespace Foundation
