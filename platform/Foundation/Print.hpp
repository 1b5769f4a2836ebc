#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace Foundation {

/// Receives one printed message, without the line break at its end. It may span several lines.
using PrintHandler = std::function<void(std::string_view message)>;

/// Prints one message of the library and a line break: to standard output, unless a program has
/// chosen a handler. What was printed is flushed, so that it stands in order with what others
/// print.
///
/// Thread: any; messages are not mixed with each other.
void print(std::string_view message);

/// Sends all later messages to `handler`; an empty one brings standard output back. The handler
/// runs on the printing thread and may print or change the handler itself.
void setPrintHandler(PrintHandler handler);

/// Says a warning of ours, for developers, on standard error.
void warn(std::string_view message);

/// Stops the program for a programming error: the message goes to standard error, then `abort`.
[[noreturn]] void fatalError(std::string_view message);

}  // namespace Foundation
