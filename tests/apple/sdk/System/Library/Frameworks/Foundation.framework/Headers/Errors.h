#pragma once

#import <Foundation/Collections.h>
#import <Foundation/Values.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSException : NSObject <NSCopying>
@property(readonly, copy) NSString *name;
@property(nullable, readonly, copy) NSString *reason;
@end

@interface NSError : NSObject <NSCopying>
+ (instancetype)errorWithDomain:(NSString *)domain
                           code:(NSInteger)code
                       userInfo:(nullable NSDictionary<NSString *, id> *)userInfo;
@property(readonly, copy) NSString *domain;
@property(readonly) NSInteger code;
@property(readonly, copy) NSDictionary<NSString *, id> *userInfo;
@property(readonly, copy) NSString *localizedDescription;
@end

NS_ASSUME_NONNULL_END
