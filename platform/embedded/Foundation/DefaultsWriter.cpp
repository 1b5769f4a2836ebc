#include "platform/embedded/Foundation/DefaultsWriter.hpp"

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <thread>
#include <utility>

namespace Foundation {

namespace {

// So that a burst of changes is one transaction.
constexpr std::chrono::milliseconds kDelay{50};

}  // namespace

DefaultsWriter& DefaultsWriter::shared() {
  static auto& instance = *new DefaultsWriter;
  return instance;
}

DefaultsWriter::DefaultsWriter() {
  std::thread([this] { run(); }).detach();
  // SQLite's connections do not survive a fork: a child that exits has nothing to store.
  static const auto owner = ::getpid();
  std::atexit([] {
    if (::getpid() == owner) shared().storeAtExit();
  });
}

void DefaultsWriter::add(DefaultsStore& store) {
  const std::lock_guard lock(mutex_);
  if (!waiting_.insert(&store).second) return;
  known_.insert(&store);
  changed_.notify_one();
}

void DefaultsWriter::run() {
  while (true) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !waiting_.empty(); });
    lock.unlock();
    std::this_thread::sleep_for(kDelay);
    lock.lock();
    const auto stores = std::exchange(waiting_, {});
    lock.unlock();
    for (auto* const store : stores) (void)store->synchronize();
  }
}

// All of them: the thread may just now be at one that does not wait any more.
void DefaultsWriter::storeAtExit() {
  std::unique_lock lock(mutex_);
  const auto stores = known_;
  lock.unlock();
  for (auto* const store : stores) (void)store->synchronize();
}

}  // namespace Foundation
