#pragma once

#include <condition_variable>
#include <mutex>
#include <set>

#include "platform/embedded/Foundation/DefaultsStore.hpp"

namespace Foundation {

/// Stores what was set without being synchronised: shortly afterwards, on a thread of its own, and
/// at the latest when the program exits.
///
/// Thread: any.
class DefaultsWriter {
 public:
  /// The process's one writer; its thread starts with the first use. Never destroyed.
  [[nodiscard]] static DefaultsWriter& shared();

  DefaultsWriter(const DefaultsWriter&) = delete;
  DefaultsWriter& operator=(const DefaultsWriter&) = delete;

  /// `store` has changes. It is never destroyed.
  void add(DefaultsStore& store);

 private:
  DefaultsWriter();
  ~DefaultsWriter() = default;

  [[noreturn]] void run();
  void storeAtExit();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::set<DefaultsStore*> waiting_;
  std::set<DefaultsStore*> known_;
};

}  // namespace Foundation
