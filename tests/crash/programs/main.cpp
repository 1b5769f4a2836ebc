// Kills programs that share a ledger, one or all, again and again, and looks whether the ledger
// keeps what it promises to several (docs/ledger.md).
//
//     programs_crash_test PROGRAM [--rounds N] [--seed S] [--programs P]

#include <cstdlib>
#include <iostream>
#include <optional>

#include "tests/crash/Broken.hpp"
#include "tests/crash/programs/CrashTest.hpp"

namespace {

std::optional<crash::Options> parse(int argc, char** argv) {
  if (argc < 2 || argc % 2 != 0) return std::nullopt;
  crash::Options options{.program = argv[1]};
  for (int at = 2; at < argc; at += 2) {
    const std::string name = argv[at];
    const auto value = std::strtoull(argv[at + 1], nullptr, 10);
    if (name == "--rounds") {
      options.rounds = value;
    } else if (name == "--seed") {
      options.seed = value;
    } else if (name == "--programs" && value > 0) {
      options.programs = value;
    } else {
      return std::nullopt;
    }
  }
  return options;
}

int run(const crash::Options& options) {
  std::cout << "seed " << options.seed << ", " << options.rounds << " rounds, " << options.programs
            << " programs" << std::endl;
  crash::CrashTest test(options);
  std::uint64_t round = 0;
  try {
    for (; round < options.rounds; ++round) test.round(round);
    test.settle();
  } catch (const std::exception& error) {
    std::cout << "round " << round << ": " << error.what() << "\n"
              << test.linesAbout(error.what()) << "replay: --seed " << options.seed << " --rounds "
              << round + 1 << " --programs " << options.programs << std::endl;
    return 1;
  }
  std::cout << "nothing lost, nothing twice: " << test.summary() << std::endl;
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const auto options = parse(argc, argv);
  if (!options) {
    std::cerr << "usage: programs_crash_test PROGRAM [--rounds N] [--seed S] [--programs P]\n";
    return 2;
  }
  return run(*options);
}
