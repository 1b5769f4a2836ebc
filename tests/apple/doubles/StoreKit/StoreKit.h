// The framework as the run check has it: the declarations of the compile check, over a root class
// that keeps properties.
#pragma once

#import <Foundation/Foundation.h>

#import "StoreKit/StoreObject.h"

#define API_AVAILABLE(...)
#define SK_ROOT_CLASS StoreObject
#import "tests/apple/sdk/System/Library/Frameworks/StoreKit.framework/Headers/StoreKit.h"

@interface SKPayment (Double)
/// What it was made for; nil for one that only names its product.
- (SKProduct*)product;
@end

/// The platform's own name of the domain, which our layer never asks for: ours has it too.
extern "C" NSString* const SKErrorDomain;
