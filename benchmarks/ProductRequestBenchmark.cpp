// Joining a request for products that is in flight, beside building the set of identifiers that the
// caller must build anyway.

#include <benchmark/benchmark.h>

#include "TQStoreKitLib/products/TQInAppProducts.hpp"

namespace {

using namespace TQStoreKitLib;

class SilentRequest final : public TQProductsRequest {
 public:
  void start() override {}
  void cancel() override {}
};

// Keeps the callback of the last request, so that the benchmark can answer it.
class CapturingBuilder final : public TQInAppProductRequestBuilder {
 public:
  std::shared_ptr<TQProductsRequest> makeProductsRequest(const TQProductIdentifiers&,
                                                         TQProductsCallback callback) override {
    callback_ = std::move(callback);
    return std::make_shared<SilentRequest>();
  }
  void answer() const { callback_({detail::LibraryOnly{}, {}, {}, std::nullopt}); }

 private:
  TQProductsCallback callback_;
};

std::vector<std::string> identifiers(std::int64_t count) {
  std::vector<std::string> result;
  for (std::int64_t i = 0; i < count; ++i) {
    result.push_back("com.example.game.product." + std::to_string(i));
  }
  return result;
}

void joinOurs(benchmark::State& state) {
  constexpr int kCallersOfOneRequest = 1024;
  const auto list = identifiers(state.range(0));
  const TQProductIdentifiers wanted(list.begin(), list.end());
  const auto builder = std::make_shared<CapturingBuilder>();
  const auto products = TQInAppProducts::make(builder);
  products->retrieveProductsInfo(wanted, [](const TQProductsResponse&) {});
  int callers = 0;
  for (auto _ : state) {
    products->retrieveProductsInfo(wanted, [](const TQProductsResponse&) {});
    if (++callers % kCallersOfOneRequest != 0) continue;
    state.PauseTiming();
    builder->answer();
    products->retrieveProductsInfo(wanted, [](const TQProductsResponse&) {});
    state.ResumeTiming();
  }
  builder->answer();
}

void buildSetBare(benchmark::State& state) {
  const auto list = identifiers(state.range(0));
  for (auto _ : state) {
    TQProductIdentifiers wanted(list.begin(), list.end());
    benchmark::DoNotOptimize(wanted.size());
  }
}

BENCHMARK(joinOurs)->Name("join a request in flight/ours")->Arg(1)->Arg(10)->Arg(100);
BENCHMARK(buildSetBare)->Name("join a request in flight/bare")->Arg(1)->Arg(10)->Arg(100);

}  // namespace
