#pragma once

#import <StoreKit/StoreKit.h>

#include "platform/StoreKit/SKDownload.hpp"

/// A download of the embedded store, as the platform would have it: an object that changes in place,
/// and one for each download as long as somebody has it.
@interface NativeDownload : SKDownload {
 @private
  StoreKit::SKDownloadPtr* _source;
}

+ (NativeDownload*)of:(const StoreKit::SKDownloadPtr&)source;
- (const StoreKit::SKDownloadPtr&)source;

@end

namespace tests {

[[nodiscard]] NSArray* platformDownloads(const StoreKit::SKDownloads& downloads);
[[nodiscard]] StoreKit::SKDownloads downloadsOf(NSArray* downloads);

}  // namespace tests
