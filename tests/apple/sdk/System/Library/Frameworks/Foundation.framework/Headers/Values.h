#pragma once

#import <Foundation/Basics.h>
#import <Foundation/Collections.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSUInteger NSStringEncoding;
enum : NSStringEncoding { NSUTF8StringEncoding = 4 };

@interface NSString : NSObject <NSCopying>
@property(class, readonly) const NSStringEncoding *availableStringEncodings;
+ (NSString *)localizedNameOfStringEncoding:(NSStringEncoding)encoding;
+ (instancetype)stringWithCharacters:(const unichar *)characters length:(NSUInteger)length;
- (nullable instancetype)initWithData:(NSData *)data encoding:(NSStringEncoding)encoding;
@property(readonly) NSUInteger length;
@property(readonly, copy) NSString *lowercaseString;
- (BOOL)isEqualToString:(NSString *)other;
- (void)getCharacters:(unichar *)buffer range:(NSRange)range;
@end

@interface NSData : NSObject <NSCopying>
+ (instancetype)dataWithBytes:(nullable const void *)bytes length:(NSUInteger)length;
@property(readonly) NSUInteger length;
@property(readonly) const void *bytes;
@end

@interface NSDate : NSObject <NSCopying>
+ (instancetype)dateWithTimeIntervalSince1970:(NSTimeInterval)seconds;
@property(readonly) NSTimeInterval timeIntervalSince1970;
@end

@interface NSLocale : NSObject <NSCopying>
@property(class, readonly, copy) NSLocale *currentLocale;
- (instancetype)initWithLocaleIdentifier:(NSString *)identifier;
@property(readonly, copy) NSString *localeIdentifier;
- (nullable id)objectForKey:(NSString *)key;
@end
FOUNDATION_EXPORT NSString *const NSLocaleCurrencyCode;

@interface NSValue : NSObject <NSCopying>
@property(readonly) const char *objCType;
@end

@interface NSNumber : NSValue
+ (NSNumber *)numberWithBool:(BOOL)value;
+ (NSNumber *)numberWithDouble:(double)value;
+ (NSNumber *)numberWithLongLong:(long long)value;
+ (NSNumber *)numberWithUnsignedLongLong:(unsigned long long)value;
@property(readonly) BOOL boolValue;
@property(readonly) double doubleValue;
@property(readonly) long long longLongValue;
@property(readonly) unsigned long long unsignedLongLongValue;
- (NSString *)descriptionWithLocale:(nullable id)locale;
@end

@interface NSDecimalNumber : NSNumber
+ (NSDecimalNumber *)decimalNumberWithString:(nullable NSString *)text locale:(nullable id)locale;
@end

API_AVAILABLE(ios(6.0))
@interface NSUUID : NSObject <NSCopying>
- (nullable instancetype)initWithUUIDString:(NSString *)text;
@property(readonly, copy) NSString *UUIDString;
@end

@interface NSURL : NSObject <NSCopying>
+ (nullable instancetype)URLWithString:(NSString *)text;
@property(nullable, readonly, copy) NSString *absoluteString;
@property(nullable, readonly, copy) NSString *path;
@end

NS_ASSUME_NONNULL_END
