#pragma once

#import <Foundation/Foundation.h>

#include <functional>
#include <map>
#include <memory>
#include <mutex>

#include "platform/Foundation/URLSession.hpp"
#include "platform/apple/Retained.hpp"

namespace Foundation {

/// A session of the platform's, and the tasks of ours that are under way in it.
///
/// A task that is under way keeps its session and is kept by it; when it has completed, both let go.
/// The platform's session is told to end when nobody refers to ours.
/// Thread: any.
class URLSession::Implementation {
 public:
  using Task = URLSessionTask::Implementation;
  using TaskPtr = std::shared_ptr<Task>;

  [[nodiscard]] static std::shared_ptr<Implementation> make(
      std::shared_ptr<URLSessionDownloadDelegate> delegate);
  explicit Implementation(std::shared_ptr<URLSessionDownloadDelegate> delegate);
  ~Implementation();
  Implementation(const Implementation&) = delete;
  Implementation& operator=(const Implementation&) = delete;

  [[nodiscard]] NSURLSession* native() const { return native_.get(); }
  /// May be null.
  [[nodiscard]] URLSessionDownloadDelegate* delegate() const { return delegate_.get(); }

  /// Keeps `task`, which is under way, until it is removed.
  void add(const TaskPtr& task);
  void remove(const TaskPtr& task);
  /// The task under way that the platform knows by that object; null when there is none.
  [[nodiscard]] TaskPtr find(NSURLSessionTask* native);

  /// Runs `work` on the session's own queue, never inside this call.
  void async(std::function<void()> work);

 private:
  std::shared_ptr<URLSessionDownloadDelegate> delegate_;
  Retained<NSURLSession*> native_;
  std::mutex mutex_;
  std::map<const Task*, TaskPtr> tasks_;
};

}  // namespace Foundation
