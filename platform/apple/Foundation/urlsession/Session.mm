#include "platform/apple/Foundation/urlsession/Session.hpp"

#include <utility>

#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Foundation/urlsession/SessionDelegate.hpp"
#include "platform/apple/Foundation/urlsession/Task.hpp"

namespace Foundation {

using Implementation = URLSession::Implementation;

std::shared_ptr<Implementation> Implementation::make(
    std::shared_ptr<URLSessionDownloadDelegate> delegate) {
  auto session = std::make_shared<Implementation>(std::move(delegate));
  callPlatform("URLSession::withDelegate", [&] {
    const auto receiver =
        Retained<TQStoreKitLibSessionDelegate*>::adopt([[TQStoreKitLibSessionDelegate alloc] init]);
    [receiver.get() setSession:session];
    session->native_ = Retained<NSURLSession*>::retain([NSURLSession
        sessionWithConfiguration:[NSURLSessionConfiguration defaultSessionConfiguration]
                        delegate:receiver.get()
                   delegateQueue:nil]);
  });
  return session;
}

Implementation::Implementation(std::shared_ptr<URLSessionDownloadDelegate> delegate)
    : delegate_(std::move(delegate)) {}

Implementation::~Implementation() {
  callPlatform("URLSession", [this] { [native() finishTasksAndInvalidate]; });
}

void Implementation::add(const TaskPtr& task) {
  const std::lock_guard lock(mutex_);
  tasks_.emplace(task.get(), task);
}

void Implementation::remove(const TaskPtr& task) {
  const std::lock_guard lock(mutex_);
  tasks_.erase(task.get());
}

Implementation::TaskPtr Implementation::find(NSURLSessionTask* native) {
  const std::lock_guard lock(mutex_);
  for (const auto& [key, task] : tasks_) {
    if (task->native() == native) return task;
  }
  return nullptr;
}

void Implementation::async(std::function<void()> work) {
  callPlatform("URLSession", [&] {
    const auto operation = Retained<NSOperation*>::adopt(
        [[TQStoreKitLibOperation alloc] initWithWork:std::move(work)]);
    [[native() delegateQueue] addOperation:operation.get()];
  });
}

}  // namespace Foundation
