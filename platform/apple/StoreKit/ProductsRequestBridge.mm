#include "platform/apple/StoreKit/ProductsRequestBridge.hpp"

#include "platform/StoreKit/SKError.hpp"
#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Foundation/Bridging.hpp"
#include "platform/apple/StoreKit/ProductBridging.hpp"

namespace StoreKit {

namespace {

SKProductsResponse responseFrom(::SKProductsResponse* response) {
  return {.products = Foundation::listFrom([response products], productFrom),
          .invalidProductIdentifiers =
              Foundation::listFrom([response invalidProductIdentifiers], Foundation::textFrom)};
}

void deliverFailure(ProductsAnswers& answers, const Foundation::NSError& error) {
  answers.deliver(
      [&](SKProductsRequestDelegate& delegate) { delegate.requestDidFailWithError(error); });
}

// The request has ended all the same, and whoever waits is to hear of it.
Foundation::NSError unreadable() {
  return SKError(SKError::Code::unknown, "The store's answer cannot be read.").nsError();
}

}  // namespace

}  // namespace StoreKit

@implementation TQStoreKitLibProductsRequestBridge

- (instancetype)initWithAnswers:(const std::shared_ptr<StoreKit::ProductsAnswers>&)answers {
  self = [super init];
  if (self != nil) _answers = new std::shared_ptr<StoreKit::ProductsAnswers>(answers);
  return self;
}

- (void)dealloc {
  delete _answers;
  [super dealloc];
}

- (void)productsRequest:(SKProductsRequest*)request didReceiveResponse:(SKProductsResponse*)native {
  const auto answers = *_answers;
  StoreKit::SKProductsResponse response;
  const bool isRead = Foundation::callPlatform("productsRequestDidReceiveResponse",
                                               [&] { response = StoreKit::responseFrom(native); });
  if (!isRead) return StoreKit::deliverFailure(*answers, StoreKit::unreadable());
  answers->deliver([&](StoreKit::SKProductsRequestDelegate& delegate) {
    delegate.productsRequestDidReceiveResponse(response);
  });
}

- (void)request:(SKRequest*)request didFailWithError:(NSError*)native {
  const auto answers = *_answers;
  const auto error = Foundation::askPlatform("requestDidFailWithError", StoreKit::unreadable(),
                                             [&] { return Foundation::errorFrom(native); });
  StoreKit::deliverFailure(*answers, error);
}

@end
