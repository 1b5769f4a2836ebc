#pragma once

#import <StoreKit/StoreKit.h>

namespace tests {

/// The platform's objects with the least that they have; a test adds what it is about.

inline NSDecimalNumber* decimal(NSString* text) {
  return [NSDecimalNumber decimalNumberWithString:text];
}

inline NSLocale* locale(NSString* identifier) {
  return [[[NSLocale alloc] initWithLocaleIdentifier:identifier] autorelease];
}

inline SKProduct* aProduct(NSString* identifier = @"gems") {
  return [SKProduct with:@{
    @"productIdentifier" : identifier,
    @"localizedTitle" : @"Gems",
    @"localizedDescription" : @"A bag of gems",
    @"price" : decimal(@"0.99"),
    @"priceLocale" : locale(@"en_US"),
  }];
}

inline SKProductSubscriptionPeriod* aPeriod(int units, int unit) {
  return [SKProductSubscriptionPeriod with:@{
    @"numberOfUnits" : [NSNumber numberWithInt:units],
    @"unit" : [NSNumber numberWithInt:unit],
  }];
}

inline SKProductDiscount* aDiscount() {
  return [SKProductDiscount with:@{
    @"price" : decimal(@"0.49"),
    @"priceLocale" : locale(@"en_US"),
    @"subscriptionPeriod" : aPeriod(1, 2),
    @"numberOfPeriods" : @3,
    @"paymentMode" : @0,
  }];
}

inline SKPayment* aPayment(NSString* identifier = @"gems") {
  return [SKPayment with:@{@"productIdentifier" : identifier}];
}

inline SKPaymentTransaction* aTransaction(int state = SKPaymentTransactionStatePurchased) {
  return [SKPaymentTransaction with:@{
    @"payment" : aPayment(),
    @"transactionState" : [NSNumber numberWithInt:state],
  }];
}

inline SKDownload* aDownload() {
  return [SKDownload with:@{
    @"contentIdentifier" : @"level.2",
    @"contentVersion" : @"1.0",
    @"state" : [NSNumber numberWithInt:SKDownloadStateActive],
    @"timeRemaining" : [NSNumber numberWithDouble:SKDownloadTimeRemainingUnknown],
  }];
}

inline NSError* anError(NSInteger code = 2) {
  return [NSError errorWithDomain:SKErrorDomain code:code userInfo:nil];
}

}  // namespace tests
