#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

/// The purchase flow for the rest of the application: view controllers in Objective-C, and in Swift
/// by way of the bridging header.
@interface Shop : NSObject
- (instancetype)initWithScreen:(void (^)(NSString* line))screen;
- (void)buy:(NSString*)productIdentifier;
- (void)restore;
@end

NS_ASSUME_NONNULL_END
