#include "tests/apple/doubles/SystemVersion.hpp"

@implementation NSProcessInfo (SystemVersion)

- (BOOL)isOperatingSystemAtLeastVersion:(NSOperatingSystemVersion)version {
  return tests::isSystemAtLeast(static_cast<int>(version.majorVersion),
                                static_cast<int>(version.minorVersion));
}

@end

/// One domain of the standard defaults, and nothing else. It only behaves like a `NSUserDefaults`:
/// one of those keeps itself for good here.
@interface SuiteDefaults : NSObject {
 @private
  NSString* _name;
}
@end

@implementation SuiteDefaults

- (instancetype)initWithName:(NSString*)name {
  self = [super init];
  if (self != nil) _name = [name copy];
  return self;
}

- (void)dealloc {
  [_name release];
  [super dealloc];
}

- (NSUserDefaults*)home {
  return [NSUserDefaults standardUserDefaults];
}

- (NSMutableDictionary*)content {
  return [NSMutableDictionary dictionaryWithDictionary:[[self home] persistentDomainForName:_name]];
}

- (void)store:(NSDictionary*)content {
  [[self home] removePersistentDomainForName:_name];
  if ([content count] > 0) [[self home] setPersistentDomain:content forName:_name];
}

- (id)objectForKey:(NSString*)key {
  return [[self content] objectForKey:key];
}

- (void)setObject:(id)object forKey:(NSString*)key {
  NSMutableDictionary* const content = [self content];
  [content setObject:object forKey:key];
  [self store:content];
}

- (void)removeObjectForKey:(NSString*)key {
  NSMutableDictionary* const content = [self content];
  [content removeObjectForKey:key];
  [self store:content];
}

- (NSDictionary*)persistentDomainForName:(NSString*)name {
  return [[self home] persistentDomainForName:name];
}

- (BOOL)synchronize {
  return [[self home] synchronize];
}

@end

@implementation NSUserDefaults (Suites)

- (instancetype)initWithSuiteName:(NSString*)name {
  [self release];
  return static_cast<id>([[SuiteDefaults alloc] initWithName:name]);
}

@end

// The keys of a user info are the platform's here as well; this Foundation has other ones.
@implementation NSError (PlatformsKeys)

- (NSString*)localizedDescription {
  NSString* const text = [[self userInfo] objectForKey:@"NSLocalizedDescription"];
  if (text != nil) return text;
  return [NSString stringWithFormat:@"The operation couldn\u2019t be completed. (%@ error %ld.)",
                                    [self domain], static_cast<long>([self code])];
}

@end
