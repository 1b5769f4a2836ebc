#pragma once

#include <cstddef>
#include <string>

namespace Foundation::detail {

/// The first `count` bytes of a database file, or all when it has fewer; it need not be SQLite's.
///
/// Reads by means of SQLite, for the system takes all locks of a process off a file when that process
/// closes any descriptor of it: what another connection here has locked would be open to everybody.
/// Nothing is written. Throws `SqliteError` when the file cannot be read.
[[nodiscard]] std::string firstBytes(const std::string& path, std::size_t count);

}  // namespace Foundation::detail
