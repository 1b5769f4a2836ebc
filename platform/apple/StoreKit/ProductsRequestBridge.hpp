#pragma once

#import <StoreKit/StoreKit.h>

#include <memory>

#include "platform/apple/StoreKit/ProductsAnswers.hpp"

/// The platform's delegate of a products request, which hands the answers on.
///
/// Callbacks come on: the thread that the platform chooses.
@interface TQStoreKitLibProductsRequestBridge : NSObject <SKProductsRequestDelegate> {
 @private
  std::shared_ptr<StoreKit::ProductsAnswers>* _answers;
}

- (instancetype)initWithAnswers:(const std::shared_ptr<StoreKit::ProductsAnswers>&)answers;

@end
