#import <StoreKit/StoreKit.h>

#include <functional>
#include <map>
#include <thread>

#include "platform/embedded/store/EmbeddedStore.hpp"
#import "tests/apple/doubles/embedded/NativeValues.h"

// The platform's products requests, answered from the embedded store's catalogue.

namespace {

// One object for each product of the catalogue, for as long as the process lives.
SKProduct* nativeProduct(const StoreKit::SKProductPtr& product) {
  static auto& objects = *new std::map<StoreKit::SKProductPtr, SKProduct*>;
  auto& object = objects[product];
  if (object == nil) object = [tests::platformProduct(*product) retain];
  return object;
}

SKProductsResponse* lookUp(NSSet<NSString*>* identifiers) {
  NSMutableArray* const products = [NSMutableArray array];
  NSMutableArray* const invalid = [NSMutableArray array];
  for (NSString* identifier in identifiers) {
    const auto* const entry =
        StoreKit::EmbeddedStore::current().catalogue().find(tests::textOf(identifier));
    if (entry != nullptr) {
      [products addObject:nativeProduct(entry->product)];
    } else {
      [invalid addObject:identifier];
    }
  }
  return
      [SKProductsResponse with:@{@"products" : products, @"invalidProductIdentifiers" : invalid}];
}

// Runs `work` on another thread, in a pool as the platform's have one.
void inBackground(std::function<void()> work) {
  std::thread([work = std::move(work)]() mutable {
    @autoreleasepool {
      work();
      work = nullptr;
    }
  }).detach();
}

}  // namespace

@implementation SKRequest

// The delegate is zeroed by whoever set it; until then it is alive while it is locked here.
- (id<SKRequestDelegate>)delegate {
  @synchronized(self) {
    return [[[[self value:@"delegate"] nonretainedObjectValue] retain] autorelease];
  }
}

- (void)setDelegate:(id<SKRequestDelegate>)delegate {
  @synchronized(self) {
    [self set:delegate == nil ? nil : [NSValue valueWithNonretainedObject:delegate]
          for:@"delegate"];
  }
}

- (NSNumber*)cancelled {
  @synchronized(self) {
    return [self value:@"cancelled"];
  }
}

- (void)start {
}

- (void)cancel {
  @synchronized(self) {
    [self set:[NSNumber numberWithBool:YES] for:@"cancelled"];
  }
}

@end

@implementation SKProductsRequest

@dynamic delegate;

- (instancetype)initWithProductIdentifiers:(NSSet<NSString*>*)identifiers {
  self = [self init];
  [self set:[[identifiers copy] autorelease] for:@"identifiers"];
  return self;
}

- (NSSet<NSString*>*)identifiers {
  return [self value:@"identifiers"];
}

- (void)start {
  [self retain];
  StoreKit::EmbeddedStore::current().answerLater([self] {
    [self decide];
    [self release];
  });
}

- (void)decide {
  if ([self cancelled] != nil) return;
  auto& scenario = StoreKit::EmbeddedStore::current().scenario();
  const auto failure = scenario.productsRequests.take();
  NSError* const error = failure ? [tests::platformError(*failure) retain] : nil;
  SKProductsResponse* const response = [lookUp([self identifiers]) retain];
  [self retain];
  const auto answer = [self, error, response] {
    [self answer:response or:error];
    [error release];
    [response release];
    [self release];
  };
  if (scenario.answersProductsInBackground) {
    inBackground(answer);
  } else {
    answer();
  }
}

- (void)answer:(SKProductsResponse*)response or:(NSError*)error {
  if ([self cancelled] != nil) return;
  id<SKProductsRequestDelegate> const delegate = [self delegate];
  if (error != nil) {
    [delegate request:self didFailWithError:error];
  } else {
    [delegate productsRequest:self didReceiveResponse:response];
  }
}

@end
