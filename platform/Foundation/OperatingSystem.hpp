#pragma once

namespace Foundation {

/// True when the application runs on this version of the system or a newer one.
///
/// Thread: any.
[[nodiscard]] bool isOperatingSystemAtLeast(int major, int minor);

}  // namespace Foundation
