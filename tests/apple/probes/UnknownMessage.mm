// refuses: instance method '-storefront' not found
#import <StoreKit/StoreKit.h>
id probe(SKPaymentQueue* queue) { return [queue storefront]; }
