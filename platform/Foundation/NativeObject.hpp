#pragma once

#include <cstddef>

namespace Foundation {

/// The platform's own object behind one of our data objects.
///
/// A realisation of the platform derives from it, hands it along with the data object that it
/// makes, and finds it again when that data object comes back. Nobody else looks inside.
/// Thread: immutable, any.
class NativeObject {
 public:
  NativeObject() = default;
  NativeObject(const NativeObject&) = delete;
  NativeObject& operator=(const NativeObject&) = delete;
  virtual ~NativeObject() = default;

  /// The platform's own equality. Objects of different kinds are never equal.
  [[nodiscard]] virtual bool isEqual(const NativeObject& other) const = 0;

  /// The platform's own hash: equal objects have equal hashes.
  [[nodiscard]] virtual std::size_t hash() const = 0;
};

}  // namespace Foundation
