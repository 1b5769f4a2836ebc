#import "tests/apple/doubles/embedded/NativeTransaction.h"

#include <map>

#import "tests/apple/doubles/embedded/NativeDownload.h"
#import "tests/apple/doubles/embedded/NativeValues.h"

namespace {

// The objects that somebody has, none of them owned.
std::map<const StoreKit::SKPaymentTransaction*, NativeTransaction*>& objects() {
  static auto& objects = *new std::map<const StoreKit::SKPaymentTransaction*, NativeTransaction*>;
  return objects;
}

}  // namespace

@implementation NativeTransaction

+ (NativeTransaction*)of:(const StoreKit::SKPaymentTransactionPtr&)source {
  if (!source) return nil;
  auto& object = objects()[source.get()];
  if (object != nil) return [[object retain] autorelease];
  object = [[[NativeTransaction alloc] init] autorelease];
  object->_source = new StoreKit::SKPaymentTransactionPtr(source);
  return object;
}

- (void)dealloc {
  objects().erase(_source->get());
  delete _source;
  [super dealloc];
}

- (const StoreKit::SKPaymentTransactionPtr&)source {
  return *_source;
}

- (const StoreKit::SKPaymentTransaction&)now {
  return **_source;
}

- (SKPaymentTransactionState)transactionState {
  return static_cast<SKPaymentTransactionState>([self now].transactionState());
}

- (NSString*)transactionIdentifier {
  const auto identifier = [self now].transactionIdentifier();
  return identifier ? tests::platformText(*identifier) : nil;
}

- (NSDate*)transactionDate {
  const auto date = [self now].transactionDate();
  return date ? [NSDate dateWithTimeIntervalSince1970:date->timeIntervalSince1970()] : nil;
}

- (SKPayment*)payment {
  return tests::platformPayment(*[self now].payment());
}

- (SKPaymentTransaction*)originalTransaction {
  return [NativeTransaction of:[self now].originalTransaction()];
}

- (NSError*)error {
  const auto error = [self now].error();
  return error ? tests::platformError(*error) : nil;
}

- (NSArray<SKDownload*>*)downloads {
  return tests::platformDownloads([self now].downloads());
}

- (BOOL)isEqual:(id)other {
  return [other isKindOfClass:[NativeTransaction class]] && [self now].isEqual([other now]);
}

- (NSUInteger)hash {
  return [self now].hash();
}

@end

namespace tests {

NSArray* platformTransactions(const StoreKit::SKPaymentTransactions& transactions) {
  NSMutableArray* const result = [NSMutableArray array];
  for (const auto& transaction : transactions) {
    [result addObject:[NativeTransaction of:transaction]];
  }
  return result;
}

}  // namespace tests
