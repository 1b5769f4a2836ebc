#include "platform/apple/Foundation/urlsession/SessionDelegate.hpp"

#include <utility>

#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Foundation/urlsession/Session.hpp"
#include "platform/apple/Foundation/urlsession/Task.hpp"

using Foundation::callBack;

namespace {

using SessionReference = std::weak_ptr<Foundation::URLSession::Implementation>;

Foundation::URLSession::Implementation::TaskPtr find(NSURLSessionTask* native,
                                                     const SessionReference& reference) {
  const auto session = reference.lock();
  return session ? session->find(native) : nullptr;
}

}  // namespace

@implementation TQStoreKitLibSessionDelegate

- (instancetype)init {
  self = [super init];
  if (self != nil) session_ = new SessionReference;
  return self;
}

- (void)dealloc {
  delete session_;
  [super dealloc];
}

- (void)setSession:(const std::shared_ptr<Foundation::URLSession::Implementation>&)session {
  *session_ = session;
}

- (void)URLSession:(NSURLSession*)session
          dataTask:(NSURLSessionDataTask*)native
    didReceiveData:(NSData*)data {
  callBack("URLSession", [&] {
    if (const auto task = find(native, *session_)) task->receive(data);
  });
}

- (void)URLSession:(NSURLSession*)session
                 downloadTask:(NSURLSessionDownloadTask*)native
                 didWriteData:(int64_t)bytesWritten
            totalBytesWritten:(int64_t)totalBytesWritten
    totalBytesExpectedToWrite:(int64_t)totalBytesExpectedToWrite {
  callBack("URLSession", [&] {
    const auto task = find(native, *session_);
    if (task) task->wrote(bytesWritten, totalBytesWritten, totalBytesExpectedToWrite);
  });
}

- (void)URLSession:(NSURLSession*)session
                 downloadTask:(NSURLSessionDownloadTask*)native
    didFinishDownloadingToURL:(NSURL*)location {
  callBack("URLSession", [&] {
    if (const auto task = find(native, *session_)) task->finishDownload(location);
  });
}

- (void)URLSession:(NSURLSession*)session
                    task:(NSURLSessionTask*)native
    didCompleteWithError:(NSError*)error {
  callBack("URLSession", [&] {
    if (const auto task = find(native, *session_)) task->completeNative(error);
  });
}

@end

@implementation TQStoreKitLibOperation

- (instancetype)initWithWork:(std::function<void()>)work {
  self = [super init];
  if (self != nil) work_ = new std::function<void()>(std::move(work));
  return self;
}

- (void)dealloc {
  callBack("URLSession", [self] { delete work_; });
  [super dealloc];
}

- (void)main {
  callBack("URLSession", [self] { std::exchange(*work_, nullptr)(); });
}

@end
