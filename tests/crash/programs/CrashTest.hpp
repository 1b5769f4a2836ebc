#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/embedded/store/ledger/SqliteLedger.hpp"
#include "tests/crash/programs/Programs.hpp"
#include "tests/crash/programs/ProgramsModel.hpp"
#include "tests/fakes/TemporaryFolder.hpp"

namespace crash {

struct Options {
  std::string program;
  std::uint64_t rounds = 100;
  std::uint64_t seed = 1;
  std::uint64_t programs = 3;
};

/// Several programs on one ledger, and what becomes of it when they are killed. Every function
/// throws `Broken` (tests/crash) when a promise is.
class CrashTest {
 public:
  explicit CrashTest(Options options) : options_(std::move(options)) {}

  /// Starts those that are dead, lets them live for a moment, and kills one or all.
  void round(std::uint64_t number);

  /// Kills all; one more program carries on what they left. Goes on with a new ledger.
  void settle();

  [[nodiscard]] std::string summary() const;

  /// What was said of the transaction that the message names, or else what was said last.
  [[nodiscard]] std::string linesAbout(const std::string& message) const;

 private:
  struct Plan;

  void hear(const std::string& line);
  void start(const std::string& name, const std::string& manner);
  void waitUntilOpen();
  void kill(std::string name);
  void killAll();
  [[nodiscard]] std::unique_ptr<StoreKit::SqliteLedger> openLedger() const;

  Options options_;
  tests::TemporaryFolder folder_;
  int ledgers_ = 0;
  std::string path_ = folder_.file("0.ledger");
  ProgramsModel model_;
  std::vector<std::string> lines_;  // of this ledger
  Programs programs_{options_.program, [this](const std::string& line) { hear(line); }};
  std::set<std::string> alive_;
  std::uint64_t started_ = 0;
  std::size_t transactions_ = 0;
  std::size_t removals_ = 0;
};

}  // namespace crash
