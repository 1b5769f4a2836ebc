#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include "platform/Foundation/URLError.hpp"
#include "platform/Foundation/URLSession.hpp"
#include "platform/apple/Foundation/Bridging.hpp"
#include "tests/fakes/TemporaryFolder.hpp"

/// An answer that says what is in its body, which this Foundation does not find in its header.
@interface DescribedResponse : NSHTTPURLResponse
@end

@implementation DescribedResponse

- (long long)expectedContentLength {
  return 10;
}

- (NSString*)MIMEType {
  return @"Application/JSON";
}

@end

namespace Foundation {
namespace {

using testing::ElementsAre;
using tests::lastTask;

template <class Response = NSHTTPURLResponse>
NSHTTPURLResponse* anAnswer(NSInteger status, NSDictionary* fields = nil) {
  return [[[Response alloc] initWithURL:[NSURL URLWithString:@"https://example.com/shop"]
                             statusCode:status
                            HTTPVersion:@"HTTP/1.1"
                           headerFields:fields] autorelease];
}

NSData* bytes(const char* text) { return [NSData dataWithBytes:text length:std::strlen(text)]; }

::NSError* loadingError(NSInteger code) {
  NSString* const domain = ::NSURLErrorDomain;
  return [::NSError errorWithDomain:domain code:code userInfo:nil];
}

URL address() { return URL::withString("https://example.com/shop").value(); }

URLRequest aRequest() { return URLRequest(address()); }

// How a data task ended.
struct Ending {
  int count = 0;
  std::optional<Data> data;
  URLResponsePtr response;
  std::optional<NSError> error;

  URLSessionDataTask::Completion completion() {
    return [this](std::optional<Data> itsData, URLResponsePtr itsResponse,
                  std::optional<NSError> itsError) {
      ++count;
      data = std::move(itsData);
      response = std::move(itsResponse);
      error = std::move(itsError);
    };
  }
};

class AppleDataTask : public testing::Test {
 protected:
  Ending ending;
  std::shared_ptr<URLSession> session = URLSession::withDelegate(nullptr);
  std::shared_ptr<URLSessionDataTask> task = session->dataTask(aRequest(), ending.completion());
  NSOperationQueue* queue = [[[lastTask() session] delegateQueue] retain];

  ~AppleDataTask() override {
    task.reset();
    session.reset();
    [queue waitUntilAllOperationsAreFinished];
    [queue release];
  }
};

TEST_F(AppleDataTask, StartsThePlatformsWhenItIsResumed) {
  EXPECT_FALSE([lastTask() isResumed]);
  EXPECT_EQ(task->state(), URLSessionTask::State::suspended);
  task->resume();
  EXPECT_TRUE([lastTask() isResumed]);
  EXPECT_EQ(task->state(), URLSessionTask::State::running);
  [lastTask() complete:nil];
}

TEST_F(AppleDataTask, CollectsTheBytes) {
  task->resume();
  [lastTask() respond:anAnswer(200)];
  [lastTask() receive:bytes("ge")];
  [lastTask() receive:bytes("ms")];
  EXPECT_EQ(task->countOfBytesReceived(), 4);
  [lastTask() complete:nil];
  EXPECT_EQ(ending.count, 1);
  EXPECT_EQ(ending.data, dataFromText("gems"));
  EXPECT_FALSE(ending.error);
  EXPECT_EQ(task->state(), URLSessionTask::State::completed);
}

TEST_F(AppleDataTask, HandsTheAnswerOn) {
  task->resume();
  [lastTask() respond:anAnswer(404, @{@"X-Shop" : @"closed"})];
  [lastTask() complete:nil];
  const auto answer = httpResponse(ending.response);
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->statusCode(), 404);
  EXPECT_EQ(answer->allHeaderFields().at("X-Shop"), "closed");
}

TEST_F(AppleDataTask, WithoutABodyHasEmptyBytes) {
  task->resume();
  [lastTask() respond:anAnswer(200)];
  [lastTask() complete:nil];
  EXPECT_EQ(ending.data, Data());
}

TEST_F(AppleDataTask, ThatMayHaveNoBodyHasNoBytes) {
  task->resume();
  [lastTask() respond:anAnswer(204)];
  [lastTask() complete:nil];
  EXPECT_EQ(ending.data, std::nullopt);
}

TEST_F(AppleDataTask, OfAHeadRequestHasNoBytes) {
  auto request = aRequest();
  request.setHTTPMethod("HEAD");
  const auto head = session->dataTask(request, ending.completion());
  head->resume();
  [lastTask() respond:anAnswer(200)];
  [lastTask() complete:nil];
  EXPECT_EQ(ending.count, 1);
  EXPECT_EQ(ending.data, std::nullopt);
}

TEST_F(AppleDataTask, KnowsTheLengthOnlyOfABodyThatIsNotCompressed) {
  task->resume();
  [lastTask() respond:anAnswer<DescribedResponse>(200)];
  EXPECT_EQ(task->countOfBytesExpectedToReceive(), 10);
  [lastTask() respond:anAnswer<DescribedResponse>(200, @{@"Content-Encoding" : @"gzip"})];
  EXPECT_EQ(task->countOfBytesExpectedToReceive(), kUnknownLength);
  [lastTask() complete:nil];
}

TEST_F(AppleDataTask, SaysTheTypeInSmallLetters) {
  task->resume();
  [lastTask() respond:anAnswer<DescribedResponse>(200)];
  [lastTask() complete:nil];
  ASSERT_TRUE(ending.response);
  EXPECT_EQ(ending.response->mimeType(), "application/json");
}

// Of a request that cannot be sent, the platform hears nothing.
class AppleRefusedTask : public AppleDataTask {
 protected:
  Ending refusal;
  std::shared_ptr<URLSessionDataTask> refused = session->dataTask(
      URLRequest(URL::withString("ftp://example.com/a").value()), refusal.completion());
};

TEST_F(AppleRefusedTask, FailsOnTheQueueOfItsSession) {
  refused->resume();
  [queue waitUntilAllOperationsAreFinished];
  ASSERT_TRUE(refusal.error);
  EXPECT_EQ(refusal.error->code(), NSURLErrorUnsupportedURL);
  EXPECT_EQ(refused->state(), URLSessionTask::State::completed);
}

TEST_F(AppleRefusedTask, CancelledEndsAsCancelled) {
  refused->cancel();
  [queue waitUntilAllOperationsAreFinished];
  ASSERT_TRUE(refusal.error);
  EXPECT_EQ(refusal.error->code(), NSURLErrorCancelled);
}

TEST_F(AppleDataTask, FailedHasTheErrorAndNoBytes) {
  ::NSError* const native = loadingError(-1009);
  task->resume();
  [lastTask() receive:bytes("half")];
  [lastTask() complete:native];
  ASSERT_TRUE(ending.error);
  EXPECT_EQ(ending.error->code(), -1009);
  EXPECT_EQ(nativeError(*ending.error), native);
  EXPECT_EQ(ending.data, std::nullopt);
}

TEST_F(AppleDataTask, CancelledEndsOnceAsCancelled) {
  task->resume();
  NSURLSessionTask* const native = [[lastTask() retain] autorelease];
  task->cancel();
  task->cancel();
  [native complete:nil];
  EXPECT_EQ(ending.count, 1);
  ASSERT_TRUE(ending.error);
  EXPECT_EQ(ending.error->code(), NSURLErrorCancelled);
}

TEST_F(AppleDataTask, IsKeptByItsSessionUntilItHasEnded) {
  task->resume();
  NSURLSessionTask* const native = [[lastTask() retain] autorelease];
  task.reset();
  session.reset();
  [native respond:anAnswer(200)];
  [native complete:nil];
  EXPECT_EQ(ending.count, 1);
  EXPECT_EQ(tests::numberOfOpenSessions(), 0);
}

TEST(AppleURLSession, EndsThePlatformsWhenNobodyRefersToIt) {
  auto session = URLSession::withDelegate(nullptr);
  EXPECT_EQ(tests::numberOfOpenSessions(), 1);
  session.reset();
  EXPECT_EQ(tests::numberOfOpenSessions(), 0);
}

TEST(AppleURLSession, TaskThatWasNeverStartedKeepsNothingOpen) {
  auto session = URLSession::withDelegate(nullptr);
  auto task = session->dataTask(aRequest(), nullptr);
  NSOperationQueue* const queue = [[lastTask() session] delegateQueue];
  session.reset();
  task.reset();
  [queue waitUntilAllOperationsAreFinished];
  EXPECT_EQ(tests::numberOfOpenSessions(), 0);
}

TEST(AppleURLSession, RequestCrossesWithAllItHas) {
  auto request = aRequest();
  request.setHTTPMethod("POST");
  request.setHTTPBody(dataFromText("{}"));
  request.setValue("application/json", "Content-Type");
  const auto session = URLSession::withDelegate(nullptr);
  const auto task = session->dataTask(request, nullptr);
  NSURLRequest* const sent = [lastTask() sentRequest];
  EXPECT_TRUE([[[sent URL] absoluteString] isEqual:@"https://example.com/shop"]);
  EXPECT_TRUE([[sent HTTPMethod] isEqual:@"POST"]);
  EXPECT_TRUE([[sent HTTPBody] isEqual:bytes("{}")]);
  EXPECT_TRUE([[sent valueForHTTPHeaderField:@"Content-Type"] isEqual:@"application/json"]);
  EXPECT_EQ([sent timeoutInterval], request.timeoutInterval().count());
}

// Writes down the progress, and what stands in the files.
class Downloads final : public URLSessionDownloadDelegate {
 public:
  std::vector<std::int64_t> written;
  std::string content;
  std::optional<URL> location;

  void didFinishDownloadingTo(URLSessionDownloadTask&, const URL& file) override {
    location = file;
    content = tests::bytesOf(file.path());
  }
  void didWriteData(URLSessionDownloadTask&, std::int64_t, std::int64_t total,
                    std::int64_t expected) override {
    written.insert(written.end(), {total, expected});
  }
};

class AppleDownloadTask : public testing::Test {
 protected:
  std::shared_ptr<Downloads> downloads = std::make_shared<Downloads>();
  std::shared_ptr<URLSession> session = URLSession::withDelegate(downloads);
  tests::TemporaryFolder folder;
  std::string path = folder.file("download.tmp");

  // What the platform does at the end of a download.
  void finish() {
    tests::write(path, "a level");
    [lastTask() respond:anAnswer(200)];
    [lastTask() finishDownloadingTo:[NSURL fileURLWithPath:nativeText(path)]];
    [lastTask() complete:nil];
  }
};

TEST_F(AppleDownloadTask, TellsItsProgress) {
  const auto task = session->downloadTask(address(), nullptr);
  task->resume();
  [lastTask() write:3 total:3 expected:7];
  [lastTask() write:4 total:7 expected:7];
  EXPECT_THAT(downloads->written, ElementsAre(3, 7, 7, 7));
  EXPECT_EQ(task->countOfBytesReceived(), 7);
  [lastTask() complete:nil];
}

TEST_F(AppleDownloadTask, HandsTheFileToTheDelegate) {
  const auto task = session->downloadTask(address(), nullptr);
  task->resume();
  finish();
  EXPECT_EQ(downloads->content, "a level");
}

TEST_F(AppleDownloadTask, HandsTheFileToTheCompletionInstead) {
  std::string content;
  std::optional<URL> location;
  const auto task = session->downloadTask(address(), [&](auto file, auto, auto) {
    location = file;
    content = tests::bytesOf(file->path());
  });
  task->resume();
  finish();
  EXPECT_EQ(content, "a level");
  EXPECT_FALSE(downloads->location);
  EXPECT_FALSE(std::filesystem::exists(location->path()));
}

TEST_F(AppleDownloadTask, LeavesAFileThatTookThePlaceOfItsOwn) {
  std::string place;
  const auto task = session->downloadTask(address(), [&](auto file, auto, auto) {
    place = file->path();
    std::filesystem::rename(place, folder.file("kept"));
    tests::write(place, "another");
  });
  task->resume();
  finish();
  EXPECT_EQ(tests::bytesOf(place), "another");
}

TEST_F(AppleDownloadTask, FailedHasNoFile) {
  std::optional<URL> location;
  std::optional<NSError> error;
  const auto task = session->downloadTask(address(), [&](auto file, auto, auto itsError) {
    location = file;
    error = itsError;
  });
  task->resume();
  [lastTask() complete:loadingError(-1001)];
  EXPECT_FALSE(location);
  EXPECT_EQ(error->code(), -1001);
}

}  // namespace
}  // namespace Foundation
