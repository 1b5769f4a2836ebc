// What examples/ios uses besides, as an application does.

#pragma once

#import <Foundation/Values.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSString (Application)
+ (nullable instancetype)stringWithUTF8String:(const char *)bytes;
@property(nullable, readonly) const char *UTF8String;
@end

NS_ASSUME_NONNULL_END
