#pragma once

#include <dispatch/dispatch.h>
#include <objc/NSObject.h>
#include <os/availability.h>

#define FOUNDATION_EXPORT extern "C"
#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")

NS_ASSUME_NONNULL_BEGIN

@class NSArray<Element>, NSData, NSDate, NSDictionary<Key, Value>, NSString;

typedef double NSTimeInterval;
typedef unsigned short unichar;

typedef struct {
  NSUInteger location;
  NSUInteger length;
} NSRange;

static inline NSRange NSMakeRange(NSUInteger location, NSUInteger length) {
  NSRange range;
  range.location = location;
  range.length = length;
  return range;
}

@protocol NSCopying
@end

@protocol NSMutableCopying
@end

typedef struct {
  unsigned long state;
  id __unsafe_unretained _Nullable *_Nullable itemsPtr;
  unsigned long *_Nullable mutationsPtr;
  unsigned long extra[5];
} NSFastEnumerationState;

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState *)state
                                  objects:(id __unsafe_unretained _Nullable [_Nonnull])buffer
                                    count:(NSUInteger)length;
@end

NS_ASSUME_NONNULL_END
