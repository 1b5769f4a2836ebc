#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "platform/StoreKit/SKProductsRequest.hpp"

namespace tests {

/// Keeps the answers to a products request, and the thread that it was last called on.
class RecordingDelegate : public StoreKit::SKProductsRequestDelegate {
 public:
  std::vector<StoreKit::SKProductsResponse> responses;
  std::vector<Foundation::NSError> errors;
  std::thread::id thread;
  std::function<void()> onAnswer;

  [[nodiscard]] std::size_t answers() const { return responses.size() + errors.size(); }

  void productsRequestDidReceiveResponse(const StoreKit::SKProductsResponse& response) override {
    thread = std::this_thread::get_id();
    responses.push_back(response);
    if (const auto hook = onAnswer) hook();
  }
  void requestDidFailWithError(const Foundation::NSError& error) override {
    thread = std::this_thread::get_id();
    errors.push_back(error);
    if (const auto hook = onAnswer) hook();
  }
};

/// The identifiers of the products of `response`, sorted.
inline std::vector<std::string> identifiersOf(const StoreKit::SKProductsResponse& response) {
  std::vector<std::string> identifiers;
  for (const auto& product : response.products) identifiers.push_back(product->productIdentifier());
  std::sort(identifiers.begin(), identifiers.end());
  return identifiers;
}

}  // namespace tests
