#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// How the embedded platform loads addresses, besides what URLSession.hpp promises.
///
/// - HTTP/2 where the server speaks it over TLS, else HTTP/1.1. Bodies come decompressed.
/// - A session has at most six connections to a host at a time; further tasks wait for one. The time
///   they wait counts for the request's time-out, which is a minute when it is no length of time.
/// - At most twenty redirects are followed. Authorization and Cookie fields of a request are not
///   told to another scheme, host or port.
/// - Cookies are kept in memory, as long as their session. Answers are not: whatever the cache
///   policy, each request asks the server.
/// - Servers are trusted by the system's roots, or those in the file that CURL_CA_BUNDLE or
///   SSL_CERT_FILE names and the folder that SSL_CERT_DIR names. Proxies are those of http_proxy,
///   https_proxy, all_proxy and no_proxy. The environment is read when a session first needs it.
/// - Content-Length, Transfer-Encoding and Connection fields of a request are not sent: the session
///   frames its messages itself. Nothing is added but Host, Accept, Accept-Encoding and User-Agent.
/// - After a time-out or a cancel the connection is closed; of HTTP/2 only the stream, while others
///   are on the connection: their answers cannot be mistaken for each other.
/// - All networking is on one thread of the process, all completions are on a few more. When the
///   process exits, what is under way is dropped, and no further completion begins.

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
