#include "benchmarks/RatioReporter.hpp"

#include <algorithm>
#include <cstdio>
#include <string_view>

bool RatioReporter::ReportContext(const Context&) {
  std::printf("%-52s %12s %12s %8s\n", "the fastest of all repetitions", "ours", "bare", "ratio");
  return true;
}

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
  for (const auto& run : runs) {
    if (run.error_occurred) {
      std::printf("error: %s: %s\n", run.run_name.str().c_str(), run.error_message.c_str());
    } else if (run.run_type == Run::RT_Iteration) {
      add(run);
    }
  }
}

void RatioReporter::add(const Run& run) {
  const bool isReal = run.run_name.time_type.find("real_time") != std::string::npos;
  const auto time = isReal ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
  const Row row{run.run_name.str(), time};
  auto& kept =
      rows_.try_emplace({run.family_index, run.per_family_instance_index}, row).first->second;
  kept.nanoseconds = std::min(kept.nanoseconds, time);
}

const RatioReporter::Row* RatioReporter::find(const std::string& name) const {
  for (const auto& [place, row] : rows_) {
    if (row.name == name) return &row;
  }
  return nullptr;
}

void RatioReporter::Finalize() {
  constexpr std::string_view kOurs = "/ours";
  for (const auto& [place, ours] : rows_) {
    const auto at = ours.name.find(kOurs);
    if (at == std::string::npos) continue;
    auto subject = ours.name;
    const auto* bare = find(std::string(subject).replace(at, kOurs.size(), "/bare"));
    if (bare == nullptr) continue;
    subject.erase(at, kOurs.size());
    std::printf("%-52s %9.0f ns %9.0f ns %8.2f\n", subject.c_str(), ours.nanoseconds,
                bare->nanoseconds, ours.nanoseconds / bare->nanoseconds);
  }
}
