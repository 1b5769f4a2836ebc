#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// Prints each benchmark as a ratio against its alternative in the same run.
///
/// A benchmark is registered under "SUBJECT/ours", its alternative under "SUBJECT/bare"; both may
/// have arguments behind that. Each is repeated several times in random order, and the fastest
/// repetitions are compared, which what else the machine does disturbs least: a ratio of 1.20 says
/// that ours takes a fifth longer. What is registered with real time is compared by it, all else by
/// the processor's. A repetition that failed is printed, and counts for nothing.
class RatioReporter final : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& context) override;
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

  /// Whether anything was measured.
  [[nodiscard]] bool hasRows() const { return !rows_.empty(); }

 private:
  struct Row {
    std::string name;
    double nanoseconds;
  };
  void add(const Run& run);
  [[nodiscard]] const Row* find(const std::string& name) const;

  std::map<std::pair<std::int64_t, std::int64_t>, Row> rows_;  // in the order of registration
};
