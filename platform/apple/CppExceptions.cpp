#include <exception>
#include <string>

#include "platform/Foundation/Print.hpp"
#include "platform/apple/ExceptionBarrier.hpp"

// Apart from the rest of the border, since a C++ handler does its work everywhere only in a file
// that is C++ and nothing else.

namespace Foundation::detail {

namespace {

void report(std::string_view place, std::string_view what) {
  warn(std::string(place).append(": a callback threw ").append(what));
}

}  // namespace

bool runInCpp(std::string_view place, void* context, void (*work)(void* context)) noexcept {
  try {
    work(context);
    return true;
  } catch (const std::exception& exception) {
    report(place, exception.what());
  } catch (...) {
    report(place, "something that is no std::exception");
  }
  return false;
}

}  // namespace Foundation::detail
