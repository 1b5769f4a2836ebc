#pragma once

#include <pthread.h>

#include <csignal>
#include <thread>
#include <utility>

namespace Dispatch {

/// Starts a thread of the platform's own. Signals stay with the application's threads. `name`, of at
/// most 15 bytes, is what debuggers show.
template <class Work>
[[nodiscard]] std::thread startSystemThread(const char* name, Work work) {
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  std::thread thread([name, run = std::move(work)] {
#ifdef __linux__
    pthread_setname_np(pthread_self(), name);
#endif
    run();
  });
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return thread;
}

}  // namespace Dispatch
