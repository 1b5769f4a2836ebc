#pragma once

#import <Foundation/Collections.h>
#import <Foundation/Errors.h>
#import <Foundation/Values.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSNotification : NSObject <NSCopying>
@property(readonly, copy) NSString *name;
@property(nullable, readonly, retain) id object;
@property(nullable, readonly, copy) NSDictionary *userInfo;
@end

@interface NSNotificationCenter : NSObject
@property(class, readonly, retain) NSNotificationCenter *defaultCenter;
- (void)addObserver:(id)observer
           selector:(SEL)selector
               name:(nullable NSString *)name
             object:(nullable id)object;
- (void)postNotificationName:(NSString *)name
                      object:(nullable id)object
                    userInfo:(nullable NSDictionary *)userInfo;
@end

@interface NSBundle : NSObject
@property(class, readonly, retain) NSBundle *mainBundle;
@property(nullable, readonly, copy) NSString *bundleIdentifier;
- (NSString *)localizedStringForKey:(NSString *)key
                              value:(nullable NSString *)value
                              table:(nullable NSString *)table;
@end

typedef struct {
  NSInteger majorVersion;
  NSInteger minorVersion;
  NSInteger patchVersion;
} NSOperatingSystemVersion;

@interface NSProcessInfo : NSObject
@property(class, readonly, retain) NSProcessInfo *processInfo;
@property(readonly, copy) NSString *processName;
- (BOOL)isOperatingSystemAtLeastVersion:(NSOperatingSystemVersion)version API_AVAILABLE(ios(8.0));
@end

@interface NSThread : NSObject
@property(class, readonly) BOOL isMainThread;
@end

@interface NSUserDefaults : NSObject
@property(class, readonly, retain) NSUserDefaults *standardUserDefaults;
- (nullable instancetype)initWithSuiteName:(nullable NSString *)name API_AVAILABLE(ios(7.0));
- (nullable id)objectForKey:(NSString *)key;
- (void)setObject:(nullable id)value forKey:(NSString *)key;
- (void)removeObjectForKey:(NSString *)key;
- (nullable NSDictionary<NSString *, id> *)persistentDomainForName:(NSString *)name;
- (BOOL)synchronize;
@end

NS_ASSUME_NONNULL_END
