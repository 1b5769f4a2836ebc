// accepts
#import <StoreKit/StoreKit.h>
bool probe(SKMutablePayment* payment) {
  if (@available(iOS 12.2, macOS 10.14.4, *)) return payment.paymentDiscount != nil;
  return false;
}
