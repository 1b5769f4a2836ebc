#pragma once

namespace tests {

/// True when the system that the doubles play is at least that one; at first it is newer than all.
[[nodiscard]] bool isSystemAtLeast(int major, int minor);

/// Plays that system from now on.
void playSystem(int major, int minor);

namespace detail {

/// What `@available(iOS 12.2, macOS 10.14, *)` asks: `platforms` is the text between the
/// parentheses.
[[nodiscard]] bool isAvailable(const char* platforms);

}  // namespace detail

}  // namespace tests

// The compiler's own answer is always yes here, and then no test could see what an older system
// does. What follows the @ sign becomes a boxed number.
#define available(...) (tests::detail::isAvailable(#__VA_ARGS__)).boolValue
