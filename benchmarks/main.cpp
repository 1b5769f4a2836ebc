#include <benchmark/benchmark.h>

#include <cstdio>

#include "benchmarks/RatioReporter.hpp"

int main(int argc, char** argv) {
  std::vector<char*> arguments(argv, argv + argc);
  std::string repetitions = "--benchmark_repetitions=9";
  std::string interleaving = "--benchmark_enable_random_interleaving=true";
  std::string duration = "--benchmark_min_time=0.05";
  arguments.insert(arguments.begin() + 1,
                   {repetitions.data(), interleaving.data(), duration.data()});
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  if (reporter.hasRows()) return 0;
  std::fprintf(stderr, "no benchmark was run\n");
  return 1;
}
