#pragma once

#include <optional>
#include <string>

#include "platform/Foundation/DefaultsObject.hpp"
#include "platform/embedded/sqlite/SqliteDatabase.hpp"

namespace Foundation {

/// How a value of the user defaults stands in a row of their file: the name of its kind, and the
/// value as SQLite has it; a truth value is 0 or 1, a date the seconds since 1970, a list or map
/// JSON text.

/// Why `object` cannot be stored; empty when it can: its texts are UTF-8, and it is not too deep.
[[nodiscard]] std::string storageProblem(const DefaultsObject& object);

/// /// Binds the name of the kind and the value as the next two parameters. There is no storage
/// problem.
void bindObject(detail::SqliteStatement& statement, const DefaultsObject& object);

/// /// Reads what `bindObject` wrote from three columns, the first of which is `column`: the kind,
/// the value, and SQLite's `typeof` the value. Absent for anything else.
[[nodiscard]] std::optional<DefaultsObject> readObject(const detail::SqliteStatement& row,
                                                       int column);

}  // namespace Foundation
