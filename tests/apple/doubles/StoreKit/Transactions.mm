#import <StoreKit/StoreKit.h>

NSTimeInterval SKDownloadTimeRemainingUnknown = -1;

@implementation SKPaymentTransaction
STORE_NUMBER(SKPaymentTransactionState, transactionState, longLongValue)
STORE_OBJECT(NSString*, transactionIdentifier)
STORE_OBJECT(NSDate*, transactionDate)
STORE_OBJECT(SKPayment*, payment)
STORE_OBJECT(SKPaymentTransaction*, originalTransaction)
STORE_OBJECT(NSError*, error)
STORE_OBJECT(NSArray<SKDownload*>*, downloads)
@end

@implementation SKDownload

STORE_OBJECT(NSString*, contentIdentifier)
STORE_OBJECT(NSString*, contentVersion)
STORE_NUMBER_SINCE(12, 0, SKDownloadState, state, longLongValue)
STORE_NUMBER_SINCE(13, 0, long long, expectedContentLength, longLongValue)
STORE_OBJECT(NSURL*, contentURL)
STORE_NUMBER(float, progress, floatValue)
STORE_NUMBER(NSTimeInterval, timeRemaining, doubleValue)
STORE_OBJECT(NSError*, error)

// The names of before 12.0 and 13.0.
STORE_NUMBER(SKDownloadState, downloadState, longLongValue)
STORE_NUMBER(long long, contentLength, longLongValue)

// A transaction keeps its downloads, and not the reverse.
- (SKPaymentTransaction*)transaction {
  return [[self value:@"transaction"] nonretainedObjectValue];
}

@end
