// refuses: method 'paymentQueue:updatedTransactions:' in protocol 'SKPaymentTransactionObserver' not implemented
#import <StoreKit/StoreKit.h>
@interface Probe : NSObject <SKPaymentTransactionObserver>
@end
@implementation Probe
@end
