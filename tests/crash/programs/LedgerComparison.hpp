#pragma once

#include "platform/embedded/store/Ledger.hpp"
#include "tests/crash/programs/ProgramsModel.hpp"

namespace crash {

// Compare what programs have said with what the ledger holds once all of them are dead. They throw
// `Broken` when that is something else.

/// What is unfinished. It is known to the model from then on.
void compareUnfinished(ProgramsModel& model, const StoreKit::Ledger& ledger);

/// Everything that the ledger ever held.
void compareAll(ProgramsModel& model, const StoreKit::Ledger& ledger);

/// The same, after a program has carried on what was under way: it all has its outcome.
void compareSettled(ProgramsModel& model, const StoreKit::Ledger& ledger);

}  // namespace crash
