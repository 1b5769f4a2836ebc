#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "tests/fakes/FakeProductsRequest.hpp"

namespace TQStoreKitLib::tests {

/// Makes requests that the test answers. It does not keep them alive.
class FakeProductsRequestBuilder final : public TQInAppProductRequestBuilder {
 public:
  explicit FakeProductsRequestBuilder(JournalPtr sharedJournal = aJournal())
      : journal(std::move(sharedJournal)) {}

  JournalPtr journal;

  [[nodiscard]] std::shared_ptr<TQProductsRequest> makeProductsRequest(
      const TQProductIdentifiers& productIds, TQProductsCallback callback) override {
    auto request = std::make_shared<FakeProductsRequest>(journal, productIds, std::move(callback));
    requests_.push_back(request);
    return request;
  }

  [[nodiscard]] std::size_t count() const { return requests_.size(); }
  /// Null once the request was released.
  [[nodiscard]] std::shared_ptr<FakeProductsRequest> at(std::size_t index) const {
    return requests_.at(index).lock();
  }
  /// Lets go of what unanswered requests hold, which is their own controller too.
  void abandonAll() {
    for (const auto& each : requests_) {
      if (const auto request = each.lock()) request->abandon();
    }
  }

 private:
  std::vector<std::weak_ptr<FakeProductsRequest>> requests_;
};

}  // namespace TQStoreKitLib::tests
