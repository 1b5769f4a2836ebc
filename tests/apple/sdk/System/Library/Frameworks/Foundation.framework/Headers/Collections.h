#pragma once

#import <Foundation/Basics.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSArray<__covariant Element> : NSObject <NSCopying, NSFastEnumeration>
+ (instancetype)array;
@property(readonly) NSUInteger count;
@end

@interface NSMutableArray<Element> : NSArray <Element>
- (void)addObject:(Element)object;
@end

@interface NSDictionary<__covariant Key, __covariant Value> : NSObject <NSCopying, NSFastEnumeration>
+ (instancetype)dictionary;
@property(readonly) NSUInteger count;
@property(readonly, copy) NSArray<Key> *allKeys;
- (nullable Value)objectForKey:(Key)key;
@end

@interface NSMutableDictionary<Key, Value> : NSDictionary <Key, Value>
- (void)setObject:(Value)object forKey:(Key)key;
- (void)removeObjectForKey:(Key)key;
@end

@interface NSSet<__covariant Element> : NSObject <NSCopying, NSFastEnumeration>
@property(readonly) NSUInteger count;
@end

@interface NSMutableSet<Element> : NSSet <Element>
+ (instancetype)set;
- (void)addObject:(Element)object;
@end

@interface NSObject (NSKeyValueCoding)
- (nullable id)valueForKey:(NSString *)key;
@end

NS_ASSUME_NONNULL_END
