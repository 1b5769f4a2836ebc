#include <gtest/gtest.h>

#include <array>
#include <latch>
#include <thread>

#include "TQStoreKitLib/transactions/TQStoreKitInstance.hpp"
#include "tests/fakes/EmbeddedShop.hpp"

namespace TQStoreKitLib::tests {
namespace {

TEST(SharedInstanceThreads, InstanceFirstUsedBySeveralThreadsIsOneObject) {
  const EmbeddedShop shop;
  std::array<const TQStoreKitInstance*, 8> instances{};
  std::array<std::thread, 8> threads;
  std::latch together(8);

  for (std::size_t i = 0; i < threads.size(); ++i) {
    threads[i] = std::thread([&, i] {
      together.arrive_and_wait();
      instances[i] = &TQStoreKitInstance::shared();
    });
  }
  for (auto& thread : threads) thread.join();

  for (const auto* instance : instances) EXPECT_EQ(instance, instances[0]);
}

}  // namespace
}  // namespace TQStoreKitLib::tests
