// What our layer uses of Foundation and the one that runs here lacks.
#pragma once

#import <Foundation/Foundation.h>

typedef struct {
  NSInteger majorVersion;
  NSInteger minorVersion;
  NSInteger patchVersion;
} NSOperatingSystemVersion;

@interface NSProcessInfo (SystemVersion)
/// The version of `tests::playSystem`.
- (BOOL)isOperatingSystemAtLeastVersion:(NSOperatingSystemVersion)version;
@end

@interface NSUserDefaults (Suites)
/// Suites are domains of the standard defaults.
- (instancetype)initWithSuiteName:(NSString*)name;
@end
