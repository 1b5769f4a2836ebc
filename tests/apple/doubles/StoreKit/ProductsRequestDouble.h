#pragma once

#import <StoreKit/StoreKit.h>

/// The handles of a test on a products request, which does nothing by itself.
@interface SKProductsRequest (Double)

- (NSSet<NSString*>*)identifiers;
- (int)starts;
- (int)cancels;

/// Says to the delegate, on this thread, what the platform says at the end.
- (void)answer:(SKProductsResponse*)response;
- (void)fail:(NSError*)error;

/// `start` of this one raises an exception from now on.
- (void)refuseStart;

@end

namespace tests {

/// The request that was made last; nil when it is gone. Not owned.
[[nodiscard]] SKProductsRequest* lastRequest();

}  // namespace tests
