#pragma once

#import <Foundation/Foundation.h>

/// What every double of a StoreKit class derives from: its properties are entries of a dictionary.
/// This runtime knows no instance variables but those of a class's own declaration, and the
/// declarations are shared with the compile check.
///
///     SKProduct* product = [SKProduct with:@{@"productIdentifier" : @"gems"}];
///     [product set:@"Gems" for:@"localizedTitle"];
@interface StoreObject : NSObject {
 @private
  NSMutableDictionary* _values;
}

/// A name that is no property of the class stops the program.
+ (instancetype)with:(NSDictionary*)values;

/// Nil takes the value away.
- (void)set:(id)value for:(NSString*)property;

/// Kept for as long as it is set, like all values; nil when it is not.
- (id)value:(NSString*)property;

/// Raises what the platform raises for a property that its version of the system lacks.
- (void)needsSystem:(int)major minor:(int)minor for:(NSString*)property;

@end

// The accessors of the doubles.
#define STORE_OBJECT(Type, name) \
  -(Type)name {                  \
    return [self value:@ #name]; \
  }
#define STORE_NUMBER(Type, name, getter)                     \
  -(Type)name {                                              \
    return static_cast<Type>([[self value:@ #name] getter]); \
  }
#define STORE_SINCE(major_, minor_, name) [self needsSystem:major_ minor:minor_ for:@ #name];
#define STORE_OBJECT_SINCE(major_, minor_, Type, name) \
  -(Type)name {                                        \
    STORE_SINCE(major_, minor_, name)                  \
    return [self value:@ #name];                       \
  }
#define STORE_NUMBER_SINCE(major_, minor_, Type, name, getter) \
  -(Type)name {                                                \
    STORE_SINCE(major_, minor_, name)                          \
    return static_cast<Type>([[self value:@ #name] getter]);   \
  }
