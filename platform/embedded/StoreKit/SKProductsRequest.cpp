#include "platform/StoreKit/SKProductsRequest.hpp"

#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "platform/Dispatch/MainQueue.hpp"
#include "platform/embedded/store/EmbeddedStore.hpp"

namespace StoreKit {

namespace {

using Failure = std::optional<Foundation::NSError>;

SKProductsResponse lookUp(const std::set<std::string>& identifiers, const Catalogue& catalogue) {
  SKProductsResponse response;
  for (const auto& identifier : identifiers) {
    if (const auto* entry = catalogue.find(identifier)) {
      response.products.push_back(entry->product);
    } else {
      response.invalidProductIdentifiers.push_back(identifier);
    }
  }
  return response;
}

}  // namespace

// Outlives its request while an answer is under way, but then has nobody to give it to.
class SKProductsRequest::Implementation : public std::enable_shared_from_this<Implementation> {
 public:
  explicit Implementation(std::set<std::string> identifiers)
      : identifiers_(std::move(identifiers)) {}

  void setDelegate(std::weak_ptr<SKProductsRequestDelegate> delegate) {
    const std::lock_guard lock(mutex_);
    delegate_.swap(delegate);
  }

  void start() {
    if (std::exchange(started_, true) || isCancelled()) return;
    EmbeddedStore::current().answerLater([weak = weak_from_this()] {
      if (const auto self = weak.lock()) self->decide();
    });
  }

  void cancel() {
    const std::lock_guard lock(mutex_);
    cancelled_ = true;
  }

 private:
  void decide() {
    if (isCancelled()) return;
    auto& store = EmbeddedStore::current();
    auto failure = store.scenario().productsRequests.take();
    auto response = lookUp(identifiers_, store.catalogue());
    auto answer = [weak = weak_from_this(), failure = std::move(failure),
                   response = std::move(response)] {
      if (const auto self = weak.lock()) self->deliver(failure, response);
    };
    if (store.scenario().answersProductsInBackground) {
      std::thread(std::move(answer)).detach();
    } else {
      answer();
    }
  }

  void deliver(const Failure& failure, const SKProductsResponse& response) {
    auto delegate = lockedDelegate();
    if (!delegate) return;
    if (failure) {
      delegate->requestDidFailWithError(*failure);
    } else {
      delegate->productsRequestDidReceiveResponse(response);
    }
    // Should this be the last reference, then what the delegate owns is destroyed where its owner
    // expects it to be.
    Dispatch::mainQueue().async([delegate = std::move(delegate)] {});
  }

  std::shared_ptr<SKProductsRequestDelegate> lockedDelegate() {
    const std::lock_guard lock(mutex_);
    return cancelled_ ? nullptr : delegate_.lock();
  }

  bool isCancelled() {
    const std::lock_guard lock(mutex_);
    return cancelled_;
  }

  const std::set<std::string> identifiers_;
  bool started_ = false;
  std::mutex mutex_;
  bool cancelled_ = false;
  std::weak_ptr<SKProductsRequestDelegate> delegate_;
};

SKProductsRequest::SKProductsRequest(std::set<std::string> productIdentifiers)
    : implementation_(std::make_shared<Implementation>(std::move(productIdentifiers))) {}

SKProductsRequest::~SKProductsRequest() { implementation_->cancel(); }

void SKProductsRequest::setDelegate(std::weak_ptr<SKProductsRequestDelegate> delegate) {
  implementation_->setDelegate(std::move(delegate));
}

void SKProductsRequest::start() { implementation_->start(); }
void SKProductsRequest::cancel() { implementation_->cancel(); }

}  // namespace StoreKit
