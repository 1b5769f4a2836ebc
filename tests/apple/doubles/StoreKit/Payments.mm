#import <StoreKit/StoreKit.h>

@implementation SKPaymentDiscount

- (instancetype)initWithIdentifier:(NSString*)identifier
                     keyIdentifier:(NSString*)keyIdentifier
                             nonce:(NSUUID*)nonce
                         signature:(NSString*)signature
                         timestamp:(NSNumber*)timestamp {
  self = [self init];
  STORE_SINCE(12, 2, initWithIdentifier)
  [self set:identifier for:@"identifier"];
  [self set:keyIdentifier for:@"keyIdentifier"];
  [self set:nonce for:@"nonce"];
  [self set:signature for:@"signature"];
  [self set:timestamp for:@"timestamp"];
  return self;
}

STORE_OBJECT(NSString*, identifier)
STORE_OBJECT(NSString*, keyIdentifier)
STORE_OBJECT(NSUUID*, nonce)
STORE_OBJECT(NSString*, signature)
STORE_OBJECT(NSNumber*, timestamp)

@end

@implementation SKPayment

+ (instancetype)paymentWithProduct:(SKProduct*)product {
  return [self with:@{@"productIdentifier" : [product productIdentifier], @"product" : product}];
}

- (instancetype)init {
  self = [super init];
  [self set:@1 for:@"quantity"];
  return self;
}

- (id)copyOf:(Class)type {
  SKPayment* const copy = [[type alloc] init];
  for (NSString* property in @[
         @"product", @"productIdentifier", @"quantity", @"requestData", @"applicationUsername",
         @"simulatesAskToBuyInSandbox", @"paymentDiscount"
       ]) {
    [copy set:[self value:property] for:property];
  }
  return copy;
}

- (id)copyWithZone:(NSZone*)zone {
  return [self copyOf:[SKPayment class]];
}

- (id)mutableCopyWithZone:(NSZone*)zone {
  return [self copyOf:[SKMutablePayment class]];
}

STORE_OBJECT(SKProduct*, product)
STORE_OBJECT(NSString*, productIdentifier)
STORE_NUMBER(NSInteger, quantity, longLongValue)
STORE_OBJECT(NSData*, requestData)
STORE_OBJECT(NSString*, applicationUsername)
STORE_NUMBER(BOOL, simulatesAskToBuyInSandbox, boolValue)
STORE_OBJECT_SINCE(12, 2, SKPaymentDiscount*, paymentDiscount)

@end

@implementation SKMutablePayment

@dynamic productIdentifier, quantity, requestData, applicationUsername, simulatesAskToBuyInSandbox,
    paymentDiscount;

- (void)setProductIdentifier:(NSString*)identifier {
  [self set:identifier for:@"productIdentifier"];
}
- (void)setQuantity:(NSInteger)quantity {
  [self set:[NSNumber numberWithInteger:quantity] for:@"quantity"];
}
- (void)setRequestData:(NSData*)data {
  [self set:data for:@"requestData"];
}
- (void)setApplicationUsername:(NSString*)name {
  [self set:name for:@"applicationUsername"];
}
- (void)setSimulatesAskToBuyInSandbox:(BOOL)simulates {
  [self set:[NSNumber numberWithBool:simulates] for:@"simulatesAskToBuyInSandbox"];
}
- (void)setPaymentDiscount:(SKPaymentDiscount*)discount {
  STORE_SINCE(12, 2, setPaymentDiscount)
  [self set:discount for:@"paymentDiscount"];
}

@end
