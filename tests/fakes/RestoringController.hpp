#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "TQStoreKitLib/transactions/TQRestorePurchasesController.hpp"
#include "tests/fakes/CapturedPrints.hpp"
#include "tests/fakes/FakePaymentQueue.hpp"

namespace TQStoreKitLib::tests {

/// A restore controller on a queue that is a double; one journal holds what the queue was asked,
/// what was printed and what was delivered.
struct RestoringController {
  JournalPtr journal = aJournal();
  CapturedPrints prints{journal};
  FakePaymentQueue queue{journal};
  std::shared_ptr<TQRestorePurchasesController> restore =
      std::make_shared<TQRestorePurchasesController>();
  std::vector<std::vector<TQTransactionResult>> calls{};

  void begin(bool atomically = true) {
    restore->begin({.atomically = atomically,
                    .callback = [this](const std::vector<TQTransactionResult>& results) {
                      journal->push_back("delivered " + std::to_string(results.size()));
                      calls.push_back(results);
                    }});
  }
  StoreKit::SKPaymentTransactions process(StoreKit::SKPaymentTransactions batch) {
    return restore->processTransactions(std::move(batch), queue);
  }
};

}  // namespace TQStoreKitLib::tests
