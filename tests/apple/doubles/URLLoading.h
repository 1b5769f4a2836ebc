// The platform's URL session, which this Foundation lacks. It loads nothing: a test says what the
// server says.
#pragma once

#import <Foundation/Foundation.h>

@class NSURLSession, NSURLSessionDataTask, NSURLSessionDownloadTask, NSURLSessionTask;

@protocol NSURLSessionDelegate <NSObject>
@end

@protocol NSURLSessionTaskDelegate <NSURLSessionDelegate>
@optional
- (void)URLSession:(NSURLSession*)session
                    task:(NSURLSessionTask*)task
    didCompleteWithError:(NSError*)error;
@end

@protocol NSURLSessionDataDelegate <NSURLSessionTaskDelegate>
@optional
- (void)URLSession:(NSURLSession*)session
          dataTask:(NSURLSessionDataTask*)task
    didReceiveData:(NSData*)data;
@end

@protocol NSURLSessionDownloadDelegate <NSURLSessionTaskDelegate>
- (void)URLSession:(NSURLSession*)session
                 downloadTask:(NSURLSessionDownloadTask*)task
    didFinishDownloadingToURL:(NSURL*)location;
@optional
- (void)URLSession:(NSURLSession*)session
                 downloadTask:(NSURLSessionDownloadTask*)task
                 didWriteData:(int64_t)bytesWritten
            totalBytesWritten:(int64_t)totalBytesWritten
    totalBytesExpectedToWrite:(int64_t)totalBytesExpectedToWrite;
@end

@interface NSURLSessionConfiguration : NSObject
+ (NSURLSessionConfiguration*)defaultSessionConfiguration;
@end

/// Owns its delegate until it has been told to end and its tasks have completed, and its tasks
/// until they have.
@interface NSURLSession : NSObject {
 @private
  id<NSURLSessionDelegate> _delegate;
  NSOperationQueue* _delegateQueue;
  NSMutableArray* _tasks;
  BOOL _ending;
}
+ (NSURLSession*)sessionWithConfiguration:(NSURLSessionConfiguration*)configuration
                                 delegate:(id<NSURLSessionDelegate>)delegate
                            delegateQueue:(NSOperationQueue*)queue;
- (NSOperationQueue*)delegateQueue;
- (NSURLSessionDataTask*)dataTaskWithRequest:(NSURLRequest*)request;
- (NSURLSessionDownloadTask*)downloadTaskWithRequest:(NSURLRequest*)request;
- (void)finishTasksAndInvalidate;
@end

@interface NSURLSessionTask : NSObject {
 @private
  NSURLSession* _session;
  NSURLRequest* _request;
  NSURLResponse* _response;
  BOOL _resumed;
  BOOL _completed;
}
- (NSURLResponse*)response;
- (void)resume;
- (void)cancel;
@end

@interface NSURLSessionDataTask : NSURLSessionTask
@end

@interface NSURLSessionDownloadTask : NSURLSessionTask
@end

/// The test's side. What it says reaches the delegate on the session's queue, and has when the
/// call returns.
@interface NSURLSessionTask (Double)
- (NSURLSession*)session;
- (NSURLRequest*)sentRequest;
- (BOOL)isResumed;
- (void)respond:(NSURLResponse*)response;
- (void)receive:(NSData*)data;
- (void)write:(int64_t)bytes total:(int64_t)total expected:(int64_t)expected;
- (void)finishDownloadingTo:(NSURL*)file;
/// Once; what comes later is dropped.
- (void)complete:(NSError*)error;
@end

namespace tests {

/// The task that was made last. Not owned.
[[nodiscard]] NSURLSessionTask* lastTask();

/// How many sessions have a delegate still.
[[nodiscard]] int numberOfOpenSessions();

}  // namespace tests
