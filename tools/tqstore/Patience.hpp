#pragma once

#include <functional>

namespace tqstore {

/// Runs the main loop until `done` says yes, and what is queued by then, such as a finish: true.
/// False when it has not within `answerDelay` (the seconds that the store takes) and some more, in
/// which the store tries again to write down what the ledger has refused once. A time in which the
/// ledger itself is waited for does not count.
[[nodiscard]] bool runUntil(const std::function<bool()>& done, double answerDelay);

/// Whether this program carries on purchases that the store has not decided on, or could not write
/// down yet.
[[nodiscard]] bool hasPurchasesUnderWay();

/// Runs what is queued, and what that queues.
void runQueued();

}  // namespace tqstore
