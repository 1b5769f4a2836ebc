#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace TQStoreKitLib::tests {

/// Something for a callback to capture: `action` runs when its last copy is destroyed.
inline std::shared_ptr<void> onDestruction(std::function<void()> action) {
  auto deleter = [action = std::move(action)](void*) { action(); };
  return {nullptr, std::move(deleter)};
}

}  // namespace TQStoreKitLib::tests
