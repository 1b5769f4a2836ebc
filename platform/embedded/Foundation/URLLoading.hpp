#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Foundation {

/// The folder for the temporary files of downloads. Absent, as at the start: the one that the
/// environment names with TMPDIR, else TQStoreKitLib in the user's cache folder (XDG_CACHE_HOME, or
/// .cache in HOME), which is most often on the file system where people want their files, else
/// /tmp. A folder that is not there is made.
///
/// Choose the folder, or one on the file system, that the downloads will be moved to: moving is
/// free then, whatever the size.
/// Thread: any; a download uses the folder that is named when its first byte comes.
void setDownloadFolder(std::optional<std::string> path);

/// Where it is now.
[[nodiscard]] std::string downloadFolder();

/// Data tasks keep what they load in memory. One whose body is longer than this fails with
/// `NSURLErrorDataLengthExceedsMaximum`; downloads know no limit. 1 GiB at the start.
///
/// Thread: any.
void setMaximumDataLength(std::int64_t bytes);
[[nodiscard]] std::int64_t maximumDataLength();

}  // namespace Foundation
