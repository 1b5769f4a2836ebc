#pragma once

#import <Foundation/Collections.h>
#import <Foundation/Errors.h>
#import <Foundation/Values.h>

NS_ASSUME_NONNULL_BEGIN

FOUNDATION_EXPORT NSString *const NSFileSystemNumber;

@interface NSFileManager : NSObject
@property(class, readonly, retain) NSFileManager *defaultManager;
- (BOOL)fileExistsAtPath:(NSString *)path isDirectory:(nullable BOOL *)isDirectory;
- (nullable NSDictionary<NSString *, id> *)attributesOfItemAtPath:(NSString *)path
                                                            error:(NSError **)error;
- (BOOL)removeItemAtPath:(NSString *)path error:(NSError **)error;
- (BOOL)copyItemAtPath:(NSString *)from toPath:(NSString *)to error:(NSError **)error;
- (BOOL)moveItemAtPath:(NSString *)from toPath:(NSString *)to error:(NSError **)error;
- (BOOL)createDirectoryAtPath:(NSString *)path
    withIntermediateDirectories:(BOOL)withIntermediateDirectories
                     attributes:(nullable NSDictionary<NSString *, id> *)attributes
                          error:(NSError **)error;
@end

NS_ASSUME_NONNULL_END
