#pragma once

#include <string>
#include <utility>

#include "TQStoreKitLib/products/TQProductsRequest.hpp"
#include "tests/fakes/FakeProduct.hpp"
#include "tests/fakes/Journal.hpp"

namespace TQStoreKitLib::tests {

inline TQProductsResponse aResponse(StoreKit::SKProductSet valids,
                                    TQProductIdentifiers invalidIDs = {}) {
  return {detail::LibraryOnly{}, std::move(valids), std::move(invalidIDs), std::nullopt};
}

inline TQProductsResponse aFailedResponse(Foundation::NSError error) {
  return {detail::LibraryOnly{}, {}, {}, std::move(error)};
}

/// A request that is answered when the test says so.
class FakeProductsRequest final : public TQProductsRequest {
 public:
  FakeProductsRequest(JournalPtr journal, TQProductIdentifiers productIds,
                      TQProductsCallback callback)
      : journal_(std::move(journal)), ids_(std::move(productIds)), callback_(std::move(callback)) {}

  void start() override {
    for (const auto& id : ids_) journal_->push_back("start " + id);
    if (ids_.empty()) journal_->emplace_back("start nothing");
  }
  void cancel() override { journal_->emplace_back("cancel"); }

  [[nodiscard]] const TQProductIdentifiers& productIds() const { return ids_; }

  /// Like the library's own query: the callback outlives the release of the request.
  void answer(const TQProductsResponse& response) const {
    const auto callback = callback_;
    callback(response);
  }
  /// Answers with a product for each identifier.
  void answerWithProducts() const {
    StoreKit::SKProductSet valids;
    for (const auto& id : ids_) valids.insert(aProduct(id));
    answer(aResponse(std::move(valids)));
  }
  /// This request will never be answered.
  void abandon() { callback_ = nullptr; }

 private:
  JournalPtr journal_;
  TQProductIdentifiers ids_;
  TQProductsCallback callback_;
};

}  // namespace TQStoreKitLib::tests
