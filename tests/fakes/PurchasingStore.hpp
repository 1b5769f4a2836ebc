#pragma once

#include <string>
#include <utility>

#include "tests/fakes/CapturedPrints.hpp"
#include "tests/fakes/FakeStore.hpp"
#include "tests/fakes/RecordedEvents.hpp"

namespace TQStoreKitLib::tests {

/// A store that sells "gems". Its journal also holds events, printed lines and completions.
struct PurchasingStore : FakeStore {
  CapturedPrints prints{journal};
  RecordedEvents events{journal};
  StoreKit::SKProductPtr gems = aProduct("gems");

  PurchasingStore() {
    complete->registerCompletion({});
    journal->clear();
  }
  TQStoreKit::PurchaseCompletion says(const std::string& name) {
    return [this, name](const TQPurchaseResult& result) {
      journal->push_back(name + (result.asSuccess() ? " success" : " error"));
    };
  }
  void buy(TQProductPurchaseOptions options = {}) {
    instance->purchaseProduct(gems, std::move(options), says("completion"));
  }
};

}  // namespace TQStoreKitLib::tests
