#pragma once

#import <Foundation/Foundation.h>

#include <memory>

#include "platform/Foundation/URLSession.hpp"

/// Hands what the platform's session has to say to the tasks of ours. The platform keeps it until
/// its session has ended, which may be after ours is gone.
@interface TQStoreKitLibSessionDelegate
    : NSObject <NSURLSessionDataDelegate, NSURLSessionDownloadDelegate> {
  std::weak_ptr<Foundation::URLSession::Implementation>* session_;
}
- (void)setSession:(const std::shared_ptr<Foundation::URLSession::Implementation>&)session;
@end

/// A piece of C++ work for a queue of the platform's.
@interface TQStoreKitLibOperation : NSOperation {
  std::function<void()>* work_;
}
- (instancetype)initWithWork:(std::function<void()>)work;
@end
