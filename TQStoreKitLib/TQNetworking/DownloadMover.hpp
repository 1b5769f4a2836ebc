#pragma once

#include <optional>

#include "TQStoreKitLib/TQNetworking/TQRequest.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/URL.hpp"

namespace TQStoreKitLib::detail {

/// Brings a finished download to its destination; the file system's error if it can't.
///
/// In this order: with `removePreviousFile`, removes a file that is there, unless the download
/// cannot be moved at all; with `createIntermediateDirectories`, makes the folders; moves. The first
/// failure ends it.
///
/// A folder in the destination's place is never removed, whatever the options: a server's choice of
/// a name must not cost a tree. The move then fails, since the place is taken. When the destination
/// is the temporary file itself, by whichever path, `removePreviousFile` doesn't remove what was
/// downloaded: the file stays where it is, no longer temporary.
[[nodiscard]] std::optional<Foundation::NSError> moveDownload(
    const Foundation::URL& temporaryURL, const TQRequest::Destination& destination);

}  // namespace TQStoreKitLib::detail
