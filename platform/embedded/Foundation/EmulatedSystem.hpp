#pragma once

namespace Foundation {

/// The system version that the embedded platform claims to be. It is newer than everything that the
/// library asks for, until a program lowers it to see what an older system does.
///
/// Thread: any.
void setOperatingSystemVersion(int major, int minor);

}  // namespace Foundation
