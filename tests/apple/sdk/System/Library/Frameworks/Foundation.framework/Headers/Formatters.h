#pragma once

#import <Foundation/Errors.h>
#import <Foundation/Values.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSTimeZone : NSObject <NSCopying>
+ (nullable instancetype)timeZoneWithName:(NSString *)name;
@end

@interface NSFormatter : NSObject <NSCopying>
@end

typedef enum : NSUInteger {
  NSNumberFormatterDecimalStyle = 1,
  NSNumberFormatterCurrencyStyle = 2,
} NSNumberFormatterStyle;

@interface NSNumberFormatter : NSFormatter
@property NSNumberFormatterStyle numberStyle;
@property(null_resettable, copy) NSLocale *locale;
- (nullable NSString *)stringFromNumber:(NSNumber *)number;
@end

@interface NSDateFormatter : NSFormatter
@property(null_resettable, copy) NSString *dateFormat;
@property(null_resettable, copy) NSLocale *locale;
@property(null_resettable, copy) NSTimeZone *timeZone;
@property(getter=isLenient) BOOL lenient;
- (BOOL)getObjectValue:(out id _Nullable *_Nullable)object
             forString:(NSString *)text
                 range:(inout nullable NSRange *)range
                 error:(out NSError *_Nullable *_Nullable)error;
@end

typedef NSUInteger NSCalendarUnit;
enum : NSCalendarUnit {
  NSCalendarUnitYear = 4,
  NSCalendarUnitMonth = 8,
  NSCalendarUnitDay = 16,
  NSCalendarUnitWeekOfMonth = 4096,
};

@interface NSDateComponents : NSObject <NSCopying>
@property NSInteger year;
@property NSInteger month;
@property NSInteger weekOfMonth API_AVAILABLE(ios(5.0));
@property NSInteger day;
@end

typedef enum : NSInteger {
  NSDateComponentsFormatterUnitsStyleAbbreviated = 1,
  NSDateComponentsFormatterUnitsStyleShort = 2,
  NSDateComponentsFormatterUnitsStyleFull = 3,
} NSDateComponentsFormatterUnitsStyle;

typedef enum : NSUInteger {
  NSDateComponentsFormatterZeroFormattingBehaviorNone = 0,
} NSDateComponentsFormatterZeroFormattingBehavior;

API_AVAILABLE(ios(8.0))
@interface NSDateComponentsFormatter : NSFormatter
@property NSDateComponentsFormatterUnitsStyle unitsStyle;
@property NSCalendarUnit allowedUnits;
@property NSDateComponentsFormatterZeroFormattingBehavior zeroFormattingBehavior;
- (nullable NSString *)stringFromDateComponents:(NSDateComponents *)components;
@end

NS_ASSUME_NONNULL_END
