#include "platform/Dispatch/MainQueue.hpp"

#import <Foundation/Foundation.h>

#include <memory>
#include <utility>

#include "platform/apple/ExceptionBarrier.hpp"

namespace Dispatch {

namespace {

// Runs the block and destroys it, which may be user code as well.
void runAndDestroy(void* context) {
  Foundation::callPlatform("Dispatch::MainQueue", [context] {
    Foundation::callBack("Dispatch::MainQueue", [context] {
      const std::unique_ptr<MainQueue::Block> block(static_cast<MainQueue::Block*>(context));
      if (*block) (*block)();
    });
  });
}

}  // namespace

MainQueue& mainQueue() {
  static auto& queue = *new MainQueue;
  return queue;
}

void MainQueue::async(Block block) {
  auto context = std::make_unique<Block>(std::move(block));
  dispatch_async_f(dispatch_get_main_queue(), context.release(), runAndDestroy);
}

bool MainQueue::isCurrentThread() const { return [NSThread isMainThread] != NO; }

}  // namespace Dispatch
