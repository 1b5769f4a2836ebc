// refuses: 'paymentDiscount' is only available on iOS 12.2 or newer
#import <StoreKit/StoreKit.h>
bool probe(SKMutablePayment* payment) { return payment.paymentDiscount != nil; }
