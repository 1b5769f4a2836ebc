#import <StoreKit/StoreKit.h>

NSString* const SKErrorDomain = @"SKErrorDomain";

@implementation SKProductSubscriptionPeriod
STORE_NUMBER(NSUInteger, numberOfUnits, unsignedLongLongValue)
STORE_NUMBER(SKProductPeriodUnit, unit, unsignedLongLongValue)
@end

@implementation SKProductDiscount
STORE_OBJECT(NSDecimalNumber*, price)
STORE_OBJECT(NSLocale*, priceLocale)
STORE_OBJECT(SKProductSubscriptionPeriod*, subscriptionPeriod)
STORE_NUMBER(NSUInteger, numberOfPeriods, unsignedLongLongValue)
STORE_NUMBER(SKProductDiscountPaymentMode, paymentMode, unsignedLongLongValue)
STORE_OBJECT_SINCE(12, 2, NSString*, identifier)
STORE_NUMBER_SINCE(12, 2, SKProductDiscountType, type, unsignedLongLongValue)
@end

@implementation SKProduct
STORE_OBJECT(NSString*, productIdentifier)
STORE_OBJECT(NSString*, localizedTitle)
STORE_OBJECT(NSString*, localizedDescription)
STORE_OBJECT(NSDecimalNumber*, price)
STORE_OBJECT(NSLocale*, priceLocale)
STORE_NUMBER(BOOL, isDownloadable, boolValue)
STORE_OBJECT(NSArray<NSNumber*>*, downloadContentLengths)
STORE_OBJECT(NSString*, downloadContentVersion)
STORE_OBJECT(SKProductSubscriptionPeriod*, subscriptionPeriod)
STORE_OBJECT(SKProductDiscount*, introductoryPrice)
STORE_OBJECT_SINCE(12, 0, NSString*, subscriptionGroupIdentifier)
STORE_OBJECT_SINCE(12, 2, NSArray<SKProductDiscount*>*, discounts)
STORE_NUMBER_SINCE(14, 0, BOOL, isFamilyShareable, boolValue)
@end

@implementation SKProductsResponse
STORE_OBJECT(NSArray<SKProduct*>*, products)
STORE_OBJECT(NSArray<NSString*>*, invalidProductIdentifiers)
@end
