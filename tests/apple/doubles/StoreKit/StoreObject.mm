#import "StoreKit/StoreObject.h"

#include <cstdio>
#include <cstdlib>

#include "tests/apple/doubles/SystemVersion.hpp"

@implementation StoreObject

+ (instancetype)with:(NSDictionary*)values {
  StoreObject* const object = [[[self alloc] init] autorelease];
  for (NSString* property in values) [object set:[values objectForKey:property] for:property];
  return object;
}

- (instancetype)init {
  self = [super init];
  if (self != nil) _values = [[NSMutableDictionary alloc] init];
  return self;
}

- (void)dealloc {
  [_values release];
  [super dealloc];
}

- (void)set:(id)value for:(NSString*)property {
  if (![self respondsToSelector:NSSelectorFromString(property)]) {
    std::fprintf(stderr, "%s has no property %s\n", [NSStringFromClass([self class]) UTF8String],
                 [property UTF8String]);
    std::abort();
  }
  if (value == nil) {
    [_values removeObjectForKey:property];
  } else {
    [_values setObject:value forKey:property];
  }
}

- (id)value:(NSString*)property {
  return [[[_values objectForKey:property] retain] autorelease];
}

- (void)needsSystem:(int)major minor:(int)minor for:(NSString*)property {
  if (tests::isSystemAtLeast(major, minor)) return;
  [NSException raise:NSInvalidArgumentException
              format:@"-[%@ %@]: unrecognized selector", NSStringFromClass([self class]), property];
}

@end
