// refuses: 'SKPaymentDiscount' is only available on iOS 12.2 or newer
#import <StoreKit/StoreKit.h>
id probe() { return [SKPaymentDiscount class]; }
