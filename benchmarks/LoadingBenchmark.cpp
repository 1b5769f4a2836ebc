// Loading over HTTP, beside libcurl by itself. The server is another process on the loopback.
//
// What is compared for small requests is the processor time of this process: of all its threads. In
// the rows "on a queue" libcurl's thread hands its answers to another one, as any client must whose
// callbacks may take their time; in the others it takes them itself.

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <string>

#include "benchmarks/BareLoader.hpp"
#include "platform/Foundation/URLSession.hpp"
#include "platform/embedded/Foundation/URLLoading.hpp"
#include "tests/platform/embedded/store/ledger/ChildProcess.hpp"

namespace {

using namespace Foundation;

constexpr int kAtOnce = 64;
constexpr const char* kSmall = "/bytes/1000";
constexpr const char* kLarge = "/stream/268435456";

// The server that all rows talk to; it ends with this process, which holds its standard input.
std::string serverUrl(const std::string& path) {
  static auto& child = *new tests::ChildProgram({HTTP_SERVER});
  static const auto& url = *new std::string(child.line());
  return url + path;
}

class Countdown {
 public:
  explicit Countdown(int left) : left_(left) {}
  void finishOne() {
    const std::lock_guard lock(mutex_);
    if (--left_ == 0) done_.notify_one();
  }
  void wait() {
    std::unique_lock lock(mutex_);
    done_.wait(lock, [this] { return left_ == 0; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable done_;
  int left_;
};

void loadOurs(benchmark::State& state, int count) {
  const URLRequest request(*URL::withString(serverUrl(kSmall)));
  const auto session = URLSession::withDelegate(nullptr);
  for (auto _ : state) {
    Countdown countdown(count);
    for (int i = 0; i < count; ++i) {
      session
          ->dataTask(request,
                     [&](auto data, auto, auto) {
                       if (!data || data->size() != 1000) std::abort();
                       countdown.finishOne();
                     })
          ->resume();
    }
    countdown.wait();
  }
}

void loadBare(benchmark::State& state, int count, bool onAQueue) {
  const auto url = serverUrl(kSmall);
  bare::Worker worker;
  bare::Loader loader(onAQueue ? &worker : nullptr);
  for (auto _ : state) {
    Countdown countdown(count);
    for (int i = 0; i < count; ++i) {
      loader.load(url, [&](const std::string& body) {
        if (body.size() != 1000) std::abort();
        countdown.finishOne();
      });
    }
    countdown.wait();
  }
}

void oneOurs(benchmark::State& state) { loadOurs(state, 1); }
void oneBare(benchmark::State& state) { loadBare(state, 1, false); }
void oneOnAQueueBare(benchmark::State& state) { loadBare(state, 1, true); }
void manyOurs(benchmark::State& state) { loadOurs(state, kAtOnce); }
void manyBare(benchmark::State& state) { loadBare(state, kAtOnce, false); }
void manyOnAQueueBare(benchmark::State& state) { loadBare(state, kAtOnce, true); }

long peakMemoryInKilobytes() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

void downloadOurs(benchmark::State& state) {
  constexpr long kMostGrowth = 16L * 1024;
  const auto url = *URL::withString(serverUrl(kLarge));
  setDownloadFolder(std::filesystem::temp_directory_path().string());
  const auto session = URLSession::withDelegate(nullptr);
  const auto before = peakMemoryInKilobytes();
  for (auto _ : state) {
    Countdown countdown(1);
    session
        ->downloadTask(url,
                       [&](const auto& file, auto, auto) {
                         // Here, where it counts, and not after the time is taken.
                         if (!file || !std::filesystem::remove(file->path())) std::abort();
                         countdown.finishOne();
                       })
        ->resume();
    countdown.wait();
  }
  if (peakMemoryInKilobytes() - before > kMostGrowth) state.SkipWithError("memory grew");
}

void downloadBare(benchmark::State& state) {
  const auto url = serverUrl(kLarge);
  for (auto _ : state) bare::downloadToATemporaryFile(url);
}

BENCHMARK(oneOurs)->Name("small request/ours")->MeasureProcessCPUTime();
BENCHMARK(oneBare)->Name("small request/bare")->MeasureProcessCPUTime();
BENCHMARK(oneOurs)->Name("small request, on a queue/ours")->MeasureProcessCPUTime();
BENCHMARK(oneOnAQueueBare)->Name("small request, on a queue/bare")->MeasureProcessCPUTime();
BENCHMARK(manyOurs)->Name("64 small requests at once/ours")->MeasureProcessCPUTime();
BENCHMARK(manyBare)->Name("64 small requests at once/bare")->MeasureProcessCPUTime();
BENCHMARK(manyOurs)->Name("64 small requests, on a queue/ours")->MeasureProcessCPUTime();
BENCHMARK(manyOnAQueueBare)->Name("64 small requests, on a queue/bare")->MeasureProcessCPUTime();
BENCHMARK(manyOurs)->Name("64 small requests at once, time/ours")->UseRealTime();
BENCHMARK(manyBare)->Name("64 small requests at once, time/bare")->UseRealTime();
BENCHMARK(downloadOurs)->Name("download of 256 MiB/ours")->UseRealTime();
BENCHMARK(downloadBare)->Name("download of 256 MiB/bare")->UseRealTime();

}  // namespace
