#import "StoreKit/ProductsRequestDouble.h"

namespace {

SKProductsRequest* last = nil;

}  // namespace

@implementation SKRequest

// Weak as the platform's, but without its mercy: a delegate that is gone is a dangling pointer.
- (id<SKRequestDelegate>)delegate {
  return [[self value:@"delegate"] nonretainedObjectValue];
}

- (void)setDelegate:(id<SKRequestDelegate>)delegate {
  [self set:delegate == nil ? nil : [NSValue valueWithNonretainedObject:delegate] for:@"delegate"];
}

- (int)starts {
  return [[self value:@"starts"] intValue];
}

- (NSNumber*)refusal {
  return [self value:@"refusal"];
}

- (int)cancels {
  return [[self value:@"cancels"] intValue];
}

- (void)start {
  if ([self refusal] != nil) [NSException raise:NSGenericException format:@"start is refused"];
  [self set:[NSNumber numberWithInt:[self starts] + 1] for:@"starts"];
}

- (void)cancel {
  [self set:[NSNumber numberWithInt:[self cancels] + 1] for:@"cancels"];
}

@end

@implementation SKProductsRequest

@dynamic delegate;

- (instancetype)initWithProductIdentifiers:(NSSet<NSString*>*)identifiers {
  self = [self init];
  [self set:[[identifiers copy] autorelease] for:@"identifiers"];
  last = self;
  return self;
}

- (void)dealloc {
  if (last == self) last = nil;
  [super dealloc];
}

STORE_OBJECT(NSSet<NSString*>*, identifiers)

- (void)answer:(SKProductsResponse*)response {
  @autoreleasepool {
    id<SKProductsRequestDelegate> const delegate = [self delegate];
    [delegate productsRequest:self didReceiveResponse:response];
    // The platform goes on, and asks the delegate of then what else it wants to hear.
    (void)[[self delegate] respondsToSelector:NSSelectorFromString(@"requestDidFinish:")];
  }
}

- (void)fail:(NSError*)error {
  @autoreleasepool {
    [[self delegate] request:self didFailWithError:error];
  }
}

- (void)refuseStart {
  [self set:[NSNumber numberWithBool:YES] for:@"refusal"];
}

@end

namespace tests {

SKProductsRequest* lastRequest() { return last; }

}  // namespace tests
