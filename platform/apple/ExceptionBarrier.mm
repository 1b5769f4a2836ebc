#include "platform/apple/ExceptionBarrier.hpp"

#import <Foundation/Foundation.h>

#include <string>

#include "platform/Foundation/Print.hpp"
#include "platform/apple/Foundation/Bridging.hpp"

namespace Foundation::detail {

namespace {

void report(std::string_view place, NSException* exception) {
  warn(std::string(place) + ": the platform raised " + textFrom([exception name]) + ": " +
       textFrom([exception reason]));
}

}  // namespace

bool runInObjectiveC(std::string_view place, void* context, void (*work)(void* context)) {
  bool isDone = false;
  @autoreleasepool {
    @try {
      work(context);
      isDone = true;
    } @catch (NSException* exception) {
      report(place, exception);
    }
  }
  return isDone;
}

}  // namespace Foundation::detail
