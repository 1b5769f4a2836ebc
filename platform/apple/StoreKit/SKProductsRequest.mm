#include "platform/StoreKit/SKProductsRequest.hpp"

#include <utility>

#include "platform/Dispatch/MainQueue.hpp"
#include "platform/StoreKit/SKError.hpp"
#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Foundation/Bridging.hpp"
#include "platform/apple/StoreKit/ProductsRequestBridge.hpp"

namespace StoreKit {

namespace {

using Foundation::callPlatform;

using NativeRequest = Foundation::Retained<::SKProductsRequest*>;
using Bridge = Foundation::Retained<TQStoreKitLibProductsRequestBridge*>;

NativeRequest nativeRequest(const std::set<std::string>& identifiers) {
  NSMutableSet<NSString*>* const texts = [NSMutableSet set];
  for (const auto& identifier : identifiers) [texts addObject:Foundation::nativeText(identifier)];
  return NativeRequest::adopt([[::SKProductsRequest alloc] initWithProductIdentifiers:texts]);
}

void failLater(const std::shared_ptr<ProductsAnswers>& answers) {
  const SKError error(SKError::Code::unknown, "The platform refused the products request.");
  Dispatch::mainQueue().async([answers, error = error.nsError()] {
    answers->deliver(
        [&](SKProductsRequestDelegate& delegate) { delegate.requestDidFailWithError(error); });
  });
}

}  // namespace

class SKProductsRequest::Implementation {
 public:
  explicit Implementation(const std::set<std::string>& identifiers)
      : bridge_(
            Bridge::adopt([[TQStoreKitLibProductsRequestBridge alloc] initWithAnswers:answers_])) {
    callPlatform("SKProductsRequest", [&] {
      request_ = nativeRequest(identifiers);
      [request_.get() setDelegate:bridge_.get()];
    });
  }
  Implementation(const Implementation&) = delete;
  Implementation& operator=(const Implementation&) = delete;

  // The platform may be calling on another thread right now, or on this one and be what destroys
  // us: its objects stay for a turn of the main queue.
  ~Implementation() {
    cancel();
    callPlatform("~SKProductsRequest", [&] { [request_.get() setDelegate:nil]; });
    Dispatch::mainQueue().async([request = std::move(request_), bridge = std::move(bridge_)] {});
  }

  void setDelegate(std::weak_ptr<SKProductsRequestDelegate> delegate) {
    answers_->setDelegate(std::move(delegate));
  }

  void start() {
    if (std::exchange(started_, true) || cancelled_) return;
    const bool isTaken =
        request_ && callPlatform("SKProductsRequest::start", [&] { [request_.get() start]; });
    if (!isTaken) failLater(answers_);
  }

  void cancel() {
    answers_->cancel();
    if (std::exchange(cancelled_, true) || !started_) return;
    callPlatform("SKProductsRequest::cancel", [&] { [request_.get() cancel]; });
  }

 private:
  const std::shared_ptr<ProductsAnswers> answers_ = std::make_shared<ProductsAnswers>();
  bool started_ = false;
  bool cancelled_ = false;
  NativeRequest request_;
  Bridge bridge_;
};

SKProductsRequest::SKProductsRequest(std::set<std::string> productIdentifiers)
    : implementation_(std::make_shared<Implementation>(productIdentifiers)) {}

SKProductsRequest::~SKProductsRequest() = default;

void SKProductsRequest::setDelegate(std::weak_ptr<SKProductsRequestDelegate> delegate) {
  implementation_->setDelegate(std::move(delegate));
}

void SKProductsRequest::start() { implementation_->start(); }
void SKProductsRequest::cancel() { implementation_->cancel(); }

}  // namespace StoreKit
