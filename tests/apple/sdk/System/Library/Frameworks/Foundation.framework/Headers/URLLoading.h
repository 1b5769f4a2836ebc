#pragma once

#import <Foundation/Collections.h>
#import <Foundation/Errors.h>
#import <Foundation/Values.h>

NS_ASSUME_NONNULL_BEGIN

@class NSURLSession, NSURLSessionDataTask, NSURLSessionDownloadTask, NSURLSessionTask;

typedef NSUInteger NSURLRequestCachePolicy;

@interface NSURLRequest : NSObject <NSCopying, NSMutableCopying>
- (instancetype)initWithURL:(NSURL *)url
                cachePolicy:(NSURLRequestCachePolicy)policy
            timeoutInterval:(NSTimeInterval)interval;
@end

@interface NSMutableURLRequest : NSURLRequest
@property(copy) NSString *HTTPMethod;
@property(nullable, copy) NSData *HTTPBody;
- (void)setValue:(nullable NSString *)value forHTTPHeaderField:(NSString *)field;
@end

@interface NSURLResponse : NSObject <NSCopying>
@property(nullable, readonly, copy) NSURL *URL;
@property(nullable, readonly, copy) NSString *MIMEType;
@property(readonly) long long expectedContentLength;
@property(nullable, readonly, copy) NSString *textEncodingName;
@end

@interface NSHTTPURLResponse : NSURLResponse
@property(readonly) NSInteger statusCode;
@property(readonly, copy) NSDictionary *allHeaderFields;
@end

@interface NSOperation : NSObject
- (void)main;
@end

@interface NSOperationQueue : NSObject
- (void)addOperation:(NSOperation *)operation;
@end

typedef NSInteger NSURLSessionResponseDisposition;
enum : NSURLSessionResponseDisposition { NSURLSessionResponseAllow = 1 };

API_AVAILABLE(ios(7.0))
@protocol NSURLSessionDelegate <NSObject>
@end

API_AVAILABLE(ios(7.0))
@protocol NSURLSessionTaskDelegate <NSURLSessionDelegate>
@optional
- (void)URLSession:(NSURLSession *)session
                    task:(NSURLSessionTask *)task
    didCompleteWithError:(nullable NSError *)error;
@end

API_AVAILABLE(ios(7.0))
@protocol NSURLSessionDataDelegate <NSURLSessionTaskDelegate>
@optional
- (void)URLSession:(NSURLSession *)session
          dataTask:(NSURLSessionDataTask *)task
    didReceiveData:(NSData *)data;
@end

API_AVAILABLE(ios(7.0))
@protocol NSURLSessionDownloadDelegate <NSURLSessionTaskDelegate>
- (void)URLSession:(NSURLSession *)session
                 downloadTask:(NSURLSessionDownloadTask *)task
    didFinishDownloadingToURL:(NSURL *)location;
@optional
- (void)URLSession:(NSURLSession *)session
                 downloadTask:(NSURLSessionDownloadTask *)task
                 didWriteData:(int64_t)bytesWritten
            totalBytesWritten:(int64_t)totalBytesWritten
    totalBytesExpectedToWrite:(int64_t)totalBytesExpectedToWrite;
@end

API_AVAILABLE(ios(7.0))
@interface NSURLSessionConfiguration : NSObject <NSCopying>
@property(class, readonly, retain) NSURLSessionConfiguration *defaultSessionConfiguration;
@end

API_AVAILABLE(ios(7.0))
@interface NSURLSession : NSObject
+ (NSURLSession *)sessionWithConfiguration:(NSURLSessionConfiguration *)configuration
                                  delegate:(nullable id<NSURLSessionDelegate>)delegate
                             delegateQueue:(nullable NSOperationQueue *)queue;
@property(readonly, retain) NSOperationQueue *delegateQueue;
- (NSURLSessionDataTask *)dataTaskWithRequest:(NSURLRequest *)request;
- (NSURLSessionDownloadTask *)downloadTaskWithRequest:(NSURLRequest *)request;
- (void)finishTasksAndInvalidate;
@end

API_AVAILABLE(ios(7.0))
@interface NSURLSessionTask : NSObject <NSCopying>
@property(nullable, readonly, copy) NSURLResponse *response;
- (void)resume;
- (void)cancel;
@end

API_AVAILABLE(ios(7.0))
@interface NSURLSessionDataTask : NSURLSessionTask
@end

API_AVAILABLE(ios(7.0))
@interface NSURLSessionDownloadTask : NSURLSessionTask
@end

NS_ASSUME_NONNULL_END
