#pragma once

namespace TQStoreKitLib::detail {

/// Marks constructors that are public for the language and meant for the library and its tests:
/// applications read such values, they do not make them.
struct LibraryOnly {
  explicit LibraryOnly() = default;
};

}  // namespace TQStoreKitLib::detail
