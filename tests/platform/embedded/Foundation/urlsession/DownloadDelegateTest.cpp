#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "tests/platform/embedded/Foundation/urlsession/Loading.hpp"

namespace Foundation {
namespace {

using tests::address;
using tests::Endings;

struct Report {
  std::int64_t written;
  std::int64_t total;
  std::int64_t expected;
};

class RecordingDelegate : public URLSessionDownloadDelegate {
 public:
  void didFinishDownloadingTo(URLSessionDownloadTask& task, const URL& location) override {
    finishedAddress = task.originalRequest().url().absoluteString();
    finished.add({.path = location.path(), .fileBytes = tests::bytesOf(location.path())});
  }
  void didWriteData(URLSessionDownloadTask& task, std::int64_t written, std::int64_t total,
                    std::int64_t expected) override {
    EXPECT_FALSE(ended);
    reports.push_back({written, total, expected});
    threads.push_back(std::this_thread::get_id());
    if (onReport) onReport(task);
  }

  std::vector<Report> reports;  // read once a task has ended: all of it is on the session's queue
  std::vector<std::thread::id> threads;
  std::function<void(URLSessionDownloadTask&)> onReport;
  bool ended = false;
  Endings finished;
  std::string finishedAddress;
};

class DownloadDelegate : public testing::Test {
 protected:
  tests::Loaded download(const std::string& path) {
    Endings endings;
    session
        ->downloadTask(address(server.url(path)),
                       [&, end = endings.forDownload()](auto file, auto response, auto error) {
                         delegate->ended = true;
                         completionThread = std::this_thread::get_id();
                         end(std::move(file), std::move(response), std::move(error));
                       })
        ->resume();
    return endings.first();
  }

  tests::HttpServer server;
  tests::DownloadsInFolder downloads;
  std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
  std::shared_ptr<URLSession> session = URLSession::withDelegate(delegate);
  std::thread::id completionThread;
};

TEST_F(DownloadDelegate, HearsOfEveryByteOnceAndInOrder) {
  (void)download("/bytes/500000");

  std::int64_t sum = 0;
  for (const auto& report : delegate->reports) {
    EXPECT_GT(report.written, 0);
    sum += report.written;
    EXPECT_EQ(report.total, sum);
    EXPECT_EQ(report.expected, 500000);
  }
  EXPECT_EQ(sum, 500000);
}

TEST_F(DownloadDelegate, HearsOfEachByteAsItComes) {
  delegate->onReport = [&](auto&) { server.openGate(std::to_string(delegate->reports.size())); };
  server.openGate("0");
  EXPECT_EQ(download("/drip").fileBytes, "0123456789");

  ASSERT_EQ(delegate->reports.size(), 10U);
  for (std::size_t i = 0; i < 10; ++i) {
    EXPECT_EQ(delegate->reports[i].written, 1);
    EXPECT_EQ(delegate->reports[i].total, static_cast<std::int64_t>(i + 1));
  }
}

TEST_F(DownloadDelegate, HearsANegativeLengthWhenNobodySaidOne) {
  (void)download("/no-length/1000");

  ASSERT_FALSE(delegate->reports.empty());
  EXPECT_EQ(delegate->reports.back().expected, kUnknownLength);
  EXPECT_EQ(delegate->reports.back().total, 1000);
}

TEST_F(DownloadDelegate, HearsNothingOfAnEmptyBody) {
  (void)download("/empty");

  EXPECT_TRUE(delegate->reports.empty());
}

TEST_F(DownloadDelegate, HearsOnTheQueueThatTheCompletionRunsOn) {
  (void)download("/file/a");

  ASSERT_FALSE(delegate->threads.empty());
  EXPECT_NE(delegate->threads.front(), std::this_thread::get_id());
}

TEST_F(DownloadDelegate, ThatIsSlowHearsLessOftenOfMore) {
  std::atomic<bool> arrived = false;
  // The first report is held back until all bytes are there.
  delegate->onReport = [&](auto& task) {
    while (!arrived && task.countOfBytesReceived() < 2'000'000) std::this_thread::yield();
    arrived = true;
  };
  (void)download("/bytes/2000000");

  EXPECT_LE(delegate->reports.size(), 3U);
  EXPECT_EQ(delegate->reports.back().total, 2'000'000);
}

TEST_F(DownloadDelegate, GetsTheFileOfATaskWithoutCompletion) {
  session->downloadTask(address(server.url("/file/a")), nullptr)->resume();
  const auto finished = delegate->finished.first();

  EXPECT_EQ(finished.fileBytes, "0123456789");
  EXPECT_EQ(delegate->finishedAddress, server.url("/file/a"));
  EXPECT_TRUE(tests::eventually([&] { return downloads.files() == 0; }));
}

TEST_F(DownloadDelegate, DoesNotGetTheFileOfATaskWithOne) {
  (void)download("/file/a");
  (void)tests::load(*session, tests::requestFor(server.url("/text")));

  EXPECT_TRUE(delegate->finished.all().empty());
}

TEST_F(DownloadDelegate, MayCancelTheTask) {
  delegate->onReport = [](auto& task) { task.cancel(); };
  server.answer("/begin", [](auto& exchange) {
    exchange.send(tests::responseHead(200, {{"Content-Length", "10"}}) + "01234");
    exchange.waitForGate("never");
    exchange.close();
  });
  const auto loaded = download("/begin");

  EXPECT_EQ(loaded.code(), NSURLErrorCancelled);
  EXPECT_EQ(loaded.status(), 200);
  EXPECT_EQ(downloads.files(), 0U);
}

TEST_F(DownloadDelegate, OfADataTaskHearsNothing) {
  (void)tests::load(*session, tests::requestFor(server.url("/bytes/1000")));

  EXPECT_TRUE(delegate->reports.empty());
}

TEST_F(DownloadDelegate, LivesAsLongAsATaskOfItsSession) {
  Endings endings;
  const std::weak_ptr<RecordingDelegate> watched = delegate;
  session->downloadTask(address(server.url("/stall")), endings.forDownload())->resume();
  session.reset();
  delegate.reset();
  ASSERT_TRUE(server.waitForRequests(1));
  EXPECT_FALSE(watched.expired());
  server.openGate("rest");

  EXPECT_EQ(endings.first().fileBytes, "0123456789");
  EXPECT_TRUE(tests::eventually([&] { return watched.expired(); }));
}

}  // namespace
}  // namespace Foundation
