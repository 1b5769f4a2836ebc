#import "tests/apple/doubles/embedded/NativeDownload.h"

#include <map>

#import "tests/apple/doubles/embedded/NativeTransaction.h"
#import "tests/apple/doubles/embedded/NativeValues.h"

namespace {

// The objects that somebody has, none of them owned.
std::map<const StoreKit::SKDownload*, NativeDownload*>& objects() {
  static auto& objects = *new std::map<const StoreKit::SKDownload*, NativeDownload*>;
  return objects;
}

}  // namespace

@implementation NativeDownload

+ (NativeDownload*)of:(const StoreKit::SKDownloadPtr&)source {
  auto& object = objects()[source.get()];
  if (object != nil) return [[object retain] autorelease];
  object = [[[NativeDownload alloc] init] autorelease];
  object->_source = new StoreKit::SKDownloadPtr(source);
  return object;
}

- (void)dealloc {
  objects().erase(_source->get());
  delete _source;
  [super dealloc];
}

- (const StoreKit::SKDownloadPtr&)source {
  return *_source;
}

- (const StoreKit::SKDownload&)now {
  return **_source;
}

- (SKDownloadState)state {
  return static_cast<SKDownloadState>([self now].state());
}

- (NSString*)contentIdentifier {
  return tests::platformText([self now].contentIdentifier());
}

- (NSString*)contentVersion {
  return tests::platformText([self now].contentVersion());
}

- (long long)expectedContentLength {
  return [self now].contentLength();
}

- (NSURL*)contentURL {
  const auto url = [self now].contentURL();
  return url ? [NSURL URLWithString:tests::platformText(*url)] : nil;
}

- (float)progress {
  return [self now].progress();
}

- (NSTimeInterval)timeRemaining {
  const auto time = [self now].timeRemaining();
  return time ? time->count() : SKDownloadTimeRemainingUnknown;
}

- (NSError*)error {
  const auto error = [self now].error();
  return error ? tests::platformError(*error) : nil;
}

- (SKPaymentTransaction*)transaction {
  return [NativeTransaction of:[self now].transaction()];
}

- (BOOL)isEqual:(id)other {
  return [other isKindOfClass:[NativeDownload class]] && [self now].isEqual([other now]);
}

- (NSUInteger)hash {
  return [self now].hash();
}

@end

namespace tests {

NSArray* platformDownloads(const StoreKit::SKDownloads& downloads) {
  NSMutableArray* const result = [NSMutableArray array];
  for (const auto& download : downloads) [result addObject:[NativeDownload of:download]];
  return result;
}

StoreKit::SKDownloads downloadsOf(NSArray* downloads) {
  StoreKit::SKDownloads result;
  for (NativeDownload* download in downloads) result.push_back([download source]);
  return result;
}

}  // namespace tests
