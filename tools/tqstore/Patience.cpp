#include "tools/tqstore/Patience.hpp"

#include <algorithm>
#include <chrono>

#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "tools/tqstore/StoreOpening.hpp"

namespace tqstore {

namespace {

constexpr std::chrono::duration<double> kBetweenLooks{0.01};
constexpr double kPatience = 8;  // seconds

}  // namespace

bool runUntil(const std::function<bool()>& done, double answerDelay) {
  const auto pause = std::chrono::duration_cast<std::chrono::nanoseconds>(kBetweenLooks);
  double left = answerDelay + kPatience;
  for (runQueued(); !done(); runQueued()) {
    if (left <= 0) return false;
    left -= kBetweenLooks.count();
    Dispatch::MainLoop::runFor(pause);
  }
  return true;
}

bool hasPurchasesUnderWay() {
  const auto entries = ledger().unfinished();
  return std::any_of(entries.begin(), entries.end(), [](const StoreKit::LedgerEntry& entry) {
    return entry.owner == ledger().owner();
  });
}

void runQueued() {
  while (Dispatch::MainLoop::drain() > 0) {
    // Each round may have queued another.
  }
}

}  // namespace tqstore
