#pragma once

#import <StoreKit/StoreKit.h>

#include "platform/StoreKit/SKDownload.hpp"

namespace StoreKit {

/// Views of the platform's downloads. A view keeps its object, reads it anew at each call, and is
/// equal to every view of an object that the platform calls equal.
///
/// To be called as the functions of `Foundation/Bridging.hpp` are; a view guards its own calls.
/// Thread: main.

/// A nil list becomes an empty one.
[[nodiscard]] SKDownloads downloadsFrom(NSArray<::SKDownload*>* list);

/// The very objects that are viewed, in their order; what is no view is left out.
[[nodiscard]] NSArray<::SKDownload*>* nativeDownloads(const SKDownloads& downloads);

}  // namespace StoreKit
