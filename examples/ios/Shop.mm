#import "examples/ios/Shop.h"

#include <memory>

#include "examples/ios/PurchaseFlow.hpp"

@implementation Shop {
  std::unique_ptr<PurchaseFlow> _flow;
}

- (instancetype)initWithScreen:(void (^)(NSString* line))screen {
  if ((self = [super init])) {
    _flow = std::make_unique<PurchaseFlow>([screen](const std::string& line) {
      screen([NSString stringWithUTF8String:line.c_str()]);
    });
  }
  return self;
}

- (void)buy:(NSString*)productIdentifier {
  _flow->buy(productIdentifier.UTF8String);
}

- (void)restore {
  _flow->restore();
}

@end
