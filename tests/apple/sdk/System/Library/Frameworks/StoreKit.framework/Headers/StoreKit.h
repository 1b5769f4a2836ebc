// What our bridge uses of the platform's StoreKit: names, types, and the first version that has them.
// iOS versions are the platform's; macOS versions are given where they are newer than what we
// target there. The run check compiles this file too: its doubles say before including it what the
// root classes derive from and that availability marks mean nothing.
#pragma once

#import <Foundation/Foundation.h>

#ifndef API_AVAILABLE
#include <os/availability.h>
#endif
#ifndef SK_ROOT_CLASS
#define SK_ROOT_CLASS NSObject
#endif
#ifndef SK_EXTERN
#ifdef __cplusplus
#define SK_EXTERN extern "C"
#else
#define SK_EXTERN extern
#endif
#endif

#pragma clang assume_nonnull begin

@class SKDownload, SKPayment, SKPaymentDiscount, SKPaymentTransaction, SKProduct, SKProductsRequest,
    SKProductsResponse, SKRequest;

SK_EXTERN NSTimeInterval SKDownloadTimeRemainingUnknown API_AVAILABLE(ios(6.0));

typedef enum SKPaymentTransactionState : NSInteger {
  SKPaymentTransactionStatePurchasing = 0,
  SKPaymentTransactionStatePurchased = 1,
  SKPaymentTransactionStateFailed = 2,
  SKPaymentTransactionStateRestored = 3,
  SKPaymentTransactionStateDeferred = 4,
} SKPaymentTransactionState API_AVAILABLE(ios(3.0));

typedef enum SKDownloadState : NSInteger {
  SKDownloadStateWaiting = 0,
  SKDownloadStateActive = 1,
  SKDownloadStatePaused = 2,
  SKDownloadStateFinished = 3,
  SKDownloadStateFailed = 4,
  SKDownloadStateCancelled = 5,
} SKDownloadState API_AVAILABLE(ios(6.0));

typedef enum SKProductPeriodUnit : NSUInteger {
  SKProductPeriodUnitDay = 0,
  SKProductPeriodUnitWeek = 1,
  SKProductPeriodUnitMonth = 2,
  SKProductPeriodUnitYear = 3,
} SKProductPeriodUnit API_AVAILABLE(ios(11.2));

typedef enum SKProductDiscountPaymentMode : NSUInteger {
  SKProductDiscountPaymentModePayAsYouGo = 0,
  SKProductDiscountPaymentModePayUpFront = 1,
  SKProductDiscountPaymentModeFreeTrial = 2,
} SKProductDiscountPaymentMode API_AVAILABLE(ios(11.2));

typedef enum SKProductDiscountType : NSUInteger {
  SKProductDiscountTypeIntroductory = 0,
  SKProductDiscountTypeSubscription = 1,
} SKProductDiscountType API_AVAILABLE(ios(12.2));

// --- products ---

API_AVAILABLE(ios(11.2))
@interface SKProductSubscriptionPeriod : SK_ROOT_CLASS
@property(nonatomic, readonly) NSUInteger numberOfUnits API_AVAILABLE(ios(11.2));
@property(nonatomic, readonly) SKProductPeriodUnit unit API_AVAILABLE(ios(11.2));
@end

API_AVAILABLE(ios(11.2))
@interface SKProductDiscount : SK_ROOT_CLASS
@property(nonatomic, readonly) NSDecimalNumber *price API_AVAILABLE(ios(11.2));
@property(nonatomic, readonly) NSLocale *priceLocale API_AVAILABLE(ios(11.2));
@property(nonatomic, readonly) SKProductSubscriptionPeriod *subscriptionPeriod API_AVAILABLE(ios(11.2));
@property(nonatomic, readonly) NSUInteger numberOfPeriods API_AVAILABLE(ios(11.2));
@property(nonatomic, readonly) SKProductDiscountPaymentMode paymentMode API_AVAILABLE(ios(11.2));
@property(nonatomic, readonly, nullable) NSString *identifier API_AVAILABLE(ios(12.2));
@property(nonatomic, readonly) SKProductDiscountType type API_AVAILABLE(ios(12.2));
@end

API_AVAILABLE(ios(3.0))
@interface SKProduct : SK_ROOT_CLASS
@property(nonatomic, readonly) NSString *productIdentifier API_AVAILABLE(ios(3.0));
@property(nonatomic, readonly) NSString *localizedTitle API_AVAILABLE(ios(3.0));
@property(nonatomic, readonly) NSString *localizedDescription API_AVAILABLE(ios(3.0));
@property(nonatomic, readonly) NSDecimalNumber *price API_AVAILABLE(ios(3.0));
@property(nonatomic, readonly) NSLocale *priceLocale API_AVAILABLE(ios(3.0));
@property(nonatomic, readonly) BOOL isDownloadable API_AVAILABLE(ios(6.0));
@property(nonatomic, readonly) NSArray<NSNumber *> *downloadContentLengths API_AVAILABLE(ios(6.0));
@property(nonatomic, readonly) NSString *downloadContentVersion API_AVAILABLE(ios(6.0));
@property(nonatomic, readonly, nullable) SKProductSubscriptionPeriod *subscriptionPeriod API_AVAILABLE(ios(11.2));
@property(nonatomic, readonly, nullable) SKProductDiscount *introductoryPrice API_AVAILABLE(ios(11.2));
@property(nonatomic, readonly, nullable) NSString *subscriptionGroupIdentifier API_AVAILABLE(ios(12.0));
@property(nonatomic, readonly) NSArray<SKProductDiscount *> *discounts API_AVAILABLE(ios(12.2));
@property(nonatomic, readonly) BOOL isFamilyShareable API_AVAILABLE(ios(14.0), macos(11.0));
@end

// --- products requests ---

@protocol SKRequestDelegate <NSObject>
@optional
- (void)request:(SKRequest *)request didFailWithError:(NSError *)error API_AVAILABLE(ios(3.0));
@end

@protocol SKProductsRequestDelegate <SKRequestDelegate>
@required
- (void)productsRequest:(SKProductsRequest *)request
     didReceiveResponse:(SKProductsResponse *)response API_AVAILABLE(ios(3.0));
@end

API_AVAILABLE(ios(3.0))
@interface SKRequest : SK_ROOT_CLASS
@property(nonatomic, weak, nullable) id<SKRequestDelegate> delegate API_AVAILABLE(ios(3.0));
- (void)start API_AVAILABLE(ios(3.0));
- (void)cancel API_AVAILABLE(ios(3.0));
@end

API_AVAILABLE(ios(3.0))
@interface SKProductsRequest : SKRequest
@property(nonatomic, weak, nullable) id<SKProductsRequestDelegate> delegate API_AVAILABLE(ios(3.0));
- (instancetype)initWithProductIdentifiers:(NSSet<NSString *> *)productIdentifiers API_AVAILABLE(ios(3.0));
@end

API_AVAILABLE(ios(3.0))
@interface SKProductsResponse : SK_ROOT_CLASS
@property(nonatomic, readonly) NSArray<SKProduct *> *products API_AVAILABLE(ios(3.0));
@property(nonatomic, readonly) NSArray<NSString *> *invalidProductIdentifiers API_AVAILABLE(ios(3.0));
@end

// --- payments ---

API_AVAILABLE(ios(12.2))
@interface SKPaymentDiscount : SK_ROOT_CLASS
- (instancetype)initWithIdentifier:(NSString *)identifier
                     keyIdentifier:(NSString *)keyIdentifier
                             nonce:(NSUUID *)nonce
                         signature:(NSString *)signature
                         timestamp:(NSNumber *)timestamp API_AVAILABLE(ios(12.2));
@property(nonatomic, readonly, copy) NSString *identifier API_AVAILABLE(ios(12.2));
@property(nonatomic, readonly, copy) NSString *keyIdentifier API_AVAILABLE(ios(12.2));
@property(nonatomic, readonly, copy) NSUUID *nonce API_AVAILABLE(ios(12.2));
@property(nonatomic, readonly, copy) NSString *signature API_AVAILABLE(ios(12.2));
@property(nonatomic, readonly, copy) NSNumber *timestamp API_AVAILABLE(ios(12.2));
@end

API_AVAILABLE(ios(3.0))
@interface SKPayment : SK_ROOT_CLASS <NSCopying, NSMutableCopying>
+ (instancetype)paymentWithProduct:(SKProduct *)product API_AVAILABLE(ios(3.0));
@property(nonatomic, copy, readonly) NSString *productIdentifier API_AVAILABLE(ios(3.0));
@property(nonatomic, readonly) NSInteger quantity API_AVAILABLE(ios(3.0));
@property(nonatomic, copy, readonly, nullable) NSData *requestData API_AVAILABLE(ios(3.0));
@property(nonatomic, copy, readonly, nullable) NSString *applicationUsername API_AVAILABLE(ios(7.0));
@property(nonatomic, readonly) BOOL simulatesAskToBuyInSandbox API_AVAILABLE(ios(8.3));
@property(nonatomic, copy, readonly, nullable) SKPaymentDiscount *paymentDiscount API_AVAILABLE(ios(12.2));
@end

API_AVAILABLE(ios(3.0))
@interface SKMutablePayment : SKPayment
@property(nonatomic, copy, readwrite) NSString *productIdentifier API_AVAILABLE(ios(3.0));
@property(nonatomic, readwrite) NSInteger quantity API_AVAILABLE(ios(3.0));
@property(nonatomic, copy, readwrite, nullable) NSData *requestData API_AVAILABLE(ios(3.0));
@property(nonatomic, copy, readwrite, nullable) NSString *applicationUsername API_AVAILABLE(ios(7.0));
@property(nonatomic, readwrite) BOOL simulatesAskToBuyInSandbox API_AVAILABLE(ios(8.3));
@property(nonatomic, copy, readwrite, nullable) SKPaymentDiscount *paymentDiscount API_AVAILABLE(ios(12.2));
@end

// --- transactions and downloads ---

API_AVAILABLE(ios(3.0))
@interface SKPaymentTransaction : SK_ROOT_CLASS
@property(nonatomic, readonly) SKPaymentTransactionState transactionState API_AVAILABLE(ios(3.0));
@property(nonatomic, readonly, nullable) NSString *transactionIdentifier API_AVAILABLE(ios(3.0));
@property(nonatomic, readonly, nullable) NSDate *transactionDate API_AVAILABLE(ios(3.0));
@property(nonatomic, readonly) SKPayment *payment API_AVAILABLE(ios(3.0));
@property(nonatomic, readonly, nullable) SKPaymentTransaction *originalTransaction API_AVAILABLE(ios(3.0));
@property(nonatomic, readonly, nullable) NSError *error API_AVAILABLE(ios(3.0));
@property(nonatomic, readonly) NSArray<SKDownload *> *downloads API_AVAILABLE(ios(6.0));
@end

API_AVAILABLE(ios(6.0))
@interface SKDownload : SK_ROOT_CLASS
@property(nonatomic, readonly) NSString *contentIdentifier API_AVAILABLE(ios(6.0));
@property(nonatomic, readonly) NSString *contentVersion API_AVAILABLE(ios(6.0));
@property(nonatomic, readonly) SKDownloadState state API_AVAILABLE(ios(12.0));
@property(nonatomic, readonly) long long expectedContentLength API_AVAILABLE(ios(13.0));
@property(nonatomic, readonly, nullable) NSURL *contentURL API_AVAILABLE(ios(6.0));
@property(nonatomic, readonly) float progress API_AVAILABLE(ios(6.0));
@property(nonatomic, readonly) NSTimeInterval timeRemaining API_AVAILABLE(ios(6.0));
@property(nonatomic, readonly, nullable) NSError *error API_AVAILABLE(ios(6.0));
@property(nonatomic, readonly) SKPaymentTransaction *transaction API_AVAILABLE(ios(6.0));
@end

// --- the payment queue ---

API_AVAILABLE(ios(3.0))
@protocol SKPaymentTransactionObserver;

API_AVAILABLE(ios(3.0))
@interface SKPaymentQueue : SK_ROOT_CLASS
+ (instancetype)defaultQueue API_AVAILABLE(ios(3.0));
+ (BOOL)canMakePayments API_AVAILABLE(ios(3.0));
@property(nonatomic, readonly) NSArray<SKPaymentTransaction *> *transactions API_AVAILABLE(ios(3.0));
- (void)addTransactionObserver:(id<SKPaymentTransactionObserver>)observer API_AVAILABLE(ios(3.0));
- (void)removeTransactionObserver:(id<SKPaymentTransactionObserver>)observer API_AVAILABLE(ios(3.0));
- (void)addPayment:(SKPayment *)payment API_AVAILABLE(ios(3.0));
- (void)finishTransaction:(SKPaymentTransaction *)transaction API_AVAILABLE(ios(3.0));
- (void)restoreCompletedTransactions API_AVAILABLE(ios(3.0));
- (void)restoreCompletedTransactionsWithApplicationUsername:(nullable NSString *)username API_AVAILABLE(ios(7.0));
- (void)startDownloads:(NSArray<SKDownload *> *)downloads API_AVAILABLE(ios(6.0));
- (void)pauseDownloads:(NSArray<SKDownload *> *)downloads API_AVAILABLE(ios(6.0));
- (void)resumeDownloads:(NSArray<SKDownload *> *)downloads API_AVAILABLE(ios(6.0));
- (void)cancelDownloads:(NSArray<SKDownload *> *)downloads API_AVAILABLE(ios(6.0));
@end

API_AVAILABLE(ios(3.0))
@protocol SKPaymentTransactionObserver <NSObject>
@required
- (void)paymentQueue:(SKPaymentQueue *)queue
    updatedTransactions:(NSArray<SKPaymentTransaction *> *)transactions API_AVAILABLE(ios(3.0));
@optional
- (void)paymentQueue:(SKPaymentQueue *)queue
    removedTransactions:(NSArray<SKPaymentTransaction *> *)transactions API_AVAILABLE(ios(3.0));
- (void)paymentQueue:(SKPaymentQueue *)queue
    restoreCompletedTransactionsFailedWithError:(NSError *)error API_AVAILABLE(ios(3.0));
- (void)paymentQueueRestoreCompletedTransactionsFinished:(SKPaymentQueue *)queue API_AVAILABLE(ios(3.0));
- (void)paymentQueue:(SKPaymentQueue *)queue
    updatedDownloads:(NSArray<SKDownload *> *)downloads API_AVAILABLE(ios(6.0));
- (BOOL)paymentQueue:(SKPaymentQueue *)queue
    shouldAddStorePayment:(SKPayment *)payment
               forProduct:(SKProduct *)product API_AVAILABLE(ios(11.0));
- (void)paymentQueueDidChangeStorefront:(SKPaymentQueue *)queue API_AVAILABLE(ios(13.0));
- (void)paymentQueue:(SKPaymentQueue *)queue
    didRevokeEntitlementsForProductIdentifiers:(NSArray<NSString *> *)productIdentifiers
    API_AVAILABLE(ios(14.0), macos(11.0));
@end

#pragma clang assume_nonnull end
