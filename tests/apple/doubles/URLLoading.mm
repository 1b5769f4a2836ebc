#import "tests/apple/doubles/URLLoading.h"

#include <atomic>
#include <functional>
#include <utility>

namespace {

NSURLSessionTask* last = nil;
std::atomic<int> openSessions = 0;

}  // namespace

/// A piece of the platform's work on a session's queue.
@interface QueuedWork : NSOperation {
 @private
  std::function<void()>* _work;
}
- (instancetype)initWithWork:(std::function<void()>)work;
@end

@implementation QueuedWork

- (instancetype)initWithWork:(std::function<void()>)work {
  self = [super init];
  if (self != nil) _work = new std::function<void()>(std::move(work));
  return self;
}

- (void)dealloc {
  delete _work;
  [super dealloc];
}

- (void)main {
  @autoreleasepool {
    (*_work)();
  }
}

@end

@interface NSURLSession (Inside)
- (id)delegate;
- (void)perform:(const std::function<void()>&)work;
- (void)performAndWait:(const std::function<void()>&)work;
- (void)forget:(NSURLSessionTask*)task;
@end

@implementation NSURLSessionConfiguration

+ (NSURLSessionConfiguration*)defaultSessionConfiguration {
  return [[[self alloc] init] autorelease];
}

@end

@interface NSURLSessionTask (Inside)
- (instancetype)initWithRequest:(NSURLRequest*)request session:(NSURLSession*)session;
- (void)tellCompletion:(NSError*)error;
@end

@implementation NSURLSession

+ (NSURLSession*)sessionWithConfiguration:(NSURLSessionConfiguration*)configuration
                                 delegate:(id<NSURLSessionDelegate>)delegate
                            delegateQueue:(NSOperationQueue*)queue {
  NSURLSession* const session = [[[self alloc] init] autorelease];
  session->_delegate = [delegate retain];
  session->_delegateQueue = queue != nil ? [queue retain] : [[NSOperationQueue alloc] init];
  [session->_delegateQueue setMaxConcurrentOperationCount:1];
  session->_tasks = [[NSMutableArray alloc] init];
  ++openSessions;
  return session;
}

- (void)dealloc {
  [_delegate release];
  [_delegateQueue release];
  [_tasks release];
  [super dealloc];
}

- (id)delegate {
  @synchronized(self) {
    return [[_delegate retain] autorelease];
  }
}

- (NSOperationQueue*)delegateQueue {
  return _delegateQueue;
}

- (NSURLSessionTask*)add:(NSURLSessionTask*)task {
  @synchronized(self) {
    if (_ending) return nil;
    [_tasks addObject:task];
    last = task;
    return task;
  }
}

- (NSURLSessionDataTask*)dataTaskWithRequest:(NSURLRequest*)request {
  return static_cast<NSURLSessionDataTask*>(
      [self add:[[[NSURLSessionDataTask alloc] initWithRequest:request session:self] autorelease]]);
}

- (NSURLSessionDownloadTask*)downloadTaskWithRequest:(NSURLRequest*)request {
  return static_cast<NSURLSessionDownloadTask*>([self
      add:[[[NSURLSessionDownloadTask alloc] initWithRequest:request session:self] autorelease]]);
}

- (void)endIfIdle {
  @synchronized(self) {
    if (!_ending || [_tasks count] > 0 || _delegate == nil) return;
    [_delegate autorelease];
    _delegate = nil;
    --openSessions;
  }
}

- (void)forget:(NSURLSessionTask*)task {
  @synchronized(self) {
    if (last == task) last = nil;
    [[task retain] autorelease];
    [_tasks removeObject:task];
  }
  [self endIfIdle];
}

- (void)finishTasksAndInvalidate {
  @synchronized(self) {
    _ending = YES;
  }
  [self endIfIdle];
}

- (void)perform:(const std::function<void()>&)work {
  [_delegateQueue addOperation:[[[QueuedWork alloc] initWithWork:work] autorelease]];
}

- (void)performAndWait:(const std::function<void()>&)work {
  [self perform:work];
  [_delegateQueue waitUntilAllOperationsAreFinished];
}

@end

@implementation NSURLSessionTask

- (instancetype)initWithRequest:(NSURLRequest*)request session:(NSURLSession*)session {
  self = [super init];
  if (self != nil) {
    _session = [session retain];
    _request = [request copy];
  }
  return self;
}

- (void)dealloc {
  [_session release];
  [_request release];
  [_response release];
  [super dealloc];
}

- (NSURLResponse*)response {
  @synchronized(self) {
    return [[_response retain] autorelease];
  }
}

- (void)resume {
  _resumed = YES;
}

- (void)cancel {
  NSError* const error = [NSError errorWithDomain:NSURLErrorDomain code:-999 userInfo:nil];
  [self retain];
  [error retain];
  [_session perform:[self, error] {
    [self tellCompletion:error];
    [error release];
    [self autorelease];
  }];
}

- (void)tellCompletion:(NSError*)error {
  if (std::exchange(_completed, YES)) return;
  [[_session delegate] URLSession:_session task:self didCompleteWithError:error];
  [_session forget:self];
}

@end

@implementation NSURLSessionDataTask
@end

@implementation NSURLSessionDownloadTask
@end

@implementation NSURLSessionTask (Double)

- (NSURLSession*)session {
  return _session;
}

- (NSURLRequest*)sentRequest {
  return _request;
}

- (BOOL)isResumed {
  return _resumed;
}

- (void)respond:(NSURLResponse*)response {
  @synchronized(self) {
    [_response autorelease];
    _response = [response retain];
  }
}

- (void)receive:(NSData*)data {
  auto* const task = static_cast<NSURLSessionDataTask*>(self);
  [_session performAndWait:[=, session = _session] {
    [[session delegate] URLSession:session dataTask:task didReceiveData:data];
  }];
}

- (void)write:(int64_t)bytes total:(int64_t)total expected:(int64_t)expected {
  auto* const task = static_cast<NSURLSessionDownloadTask*>(self);
  [_session performAndWait:[=, session = _session] {
    [[session delegate] URLSession:session
                      downloadTask:task
                      didWriteData:bytes
                 totalBytesWritten:total
         totalBytesExpectedToWrite:expected];
  }];
}

- (void)finishDownloadingTo:(NSURL*)file {
  auto* const task = static_cast<NSURLSessionDownloadTask*>(self);
  [_session performAndWait:[=, session = _session] {
    [[session delegate] URLSession:session downloadTask:task didFinishDownloadingToURL:file];
    [[NSFileManager defaultManager] removeItemAtPath:[file path] error:NULL];
  }];
}

- (void)complete:(NSError*)error {
  [[self retain] autorelease];
  [_session performAndWait:[=] { [self tellCompletion:error]; }];
}

@end

namespace tests {

NSURLSessionTask* lastTask() { return last; }

int numberOfOpenSessions() { return openSessions; }

}  // namespace tests
