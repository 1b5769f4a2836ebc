#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <future>

#include "platform/Foundation/FileManager.hpp"
#include "platform/Foundation/URLError.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "platform/embedded/Foundation/URLLoading.hpp"
#include "tests/TQStoreKitLib/TQNetworking/Reply.hpp"
#include "tests/fakes/OnDestruction.hpp"
#include "tests/fakes/TemporaryFolder.hpp"

namespace TQStoreKitLib {
namespace {

namespace fs = std::filesystem;
using Dispatch::MainLoop;
using Foundation::NSError;
using Foundation::URL;
using Foundation::URLResponsePtr;
using tests::address;
using ::tests::bytesOf;
using Options = TQDownloadOptions;

constexpr Options kRemove = Options::removePreviousFile();
constexpr Options kCreate = Options::createIntermediateDirectories();
const char* const kText = "The quick brown fox jumps over the lazy dog.";

struct Outcome {
  std::optional<URL> place;
  URLResponsePtr response;
  std::optional<NSError> error;
  std::thread::id thread;
};

struct Count {
  std::int64_t written;
  std::int64_t total;
  std::int64_t expected;
};

class Download : public testing::Test {
 protected:
  Download() { Foundation::setDownloadFolder(temporary_.path()); }
  ~Download() override { Foundation::setDownloadFolder(std::nullopt); }

  [[nodiscard]] std::string path(const std::string& name) const { return folder_.file(name); }
  [[nodiscard]] TQNetworking::DestinationChoice to(const std::string& name, Options options) const {
    return [place = URL::fileURLWithPath(path(name)), options](
               const URL&, const Foundation::URLResponse&) -> TQRequest::Destination {
      return {place, options};
    };
  }
  [[nodiscard]] TQNetworking::DownloadCompletion completion() {
    return [this](std::optional<URL> place, URLResponsePtr response, std::optional<NSError> error) {
      outcomes_.push_back(
          {std::move(place), std::move(response), std::move(error), std::this_thread::get_id()});
      MainLoop::stop();
    };
  }
  TQNetworking::DownloadTask start(const std::string& target,
                                   TQNetworking::DestinationChoice destination) {
    return TQNetworking::shared().download(address(server_.url(target)), progress_,
                                           std::move(destination), completion());
  }
  Outcome end() {
    MainLoop::runFor(std::chrono::seconds(10));
    if (outcomes_.empty()) return {{}, {}, NSError("the download never ended", 0), {}};
    return outcomes_.front();
  }
  Outcome download(const std::string& target, TQNetworking::DestinationChoice destination) {
    (void)start(target, std::move(destination));
    return end();
  }
  // Counts are written on the session's queue, and read when the completion has come.
  void recordProgress() {
    progress_ = [this](std::int64_t written, std::int64_t total, std::int64_t expected) {
      counts_.push_back({written, total, expected});
      progressThread_ = std::this_thread::get_id();
    };
  }
  // The same choice, and `isOver` knows when the session has let go of it.
  TQNetworking::DestinationChoice lettingGo(TQNetworking::DestinationChoice choice) {
    return [choice = std::move(choice),
            witness = tests::onDestruction([this] { released_.set_value(); })](
               const URL& temporaryURL, const Foundation::URLResponse& response) {
      return choice(temporaryURL, response);
    };
  }
  [[nodiscard]] bool isOver() {
    return released_.get_future().wait_for(std::chrono::seconds(10)) == std::future_status::ready;
  }
  [[nodiscard]] std::size_t temporaryFiles() const {
    const fs::directory_iterator items(temporary_.path());
    return static_cast<std::size_t>(std::distance(fs::begin(items), fs::end(items)));
  }

  tests::HttpServer server_;
  ::tests::TemporaryFolder folder_;
  ::tests::TemporaryFolder temporary_;
  TQNetworking::Progress progress_;
  std::vector<Outcome> outcomes_;
  std::vector<Count> counts_;
  std::thread::id progressThread_;
  std::promise<void> released_;
};

// --- the file ---

TEST_F(Download, ArrivesAtTheChosenPlace) {
  const auto outcome = download("/text", to("a", {}));
  EXPECT_EQ(outcome.place, URL::fileURLWithPath(path("a")));
  EXPECT_FALSE(outcome.error);
  EXPECT_EQ(bytesOf(path("a")), kText);
}

TEST_F(Download, OfAnyStatusIsASuccess) {
  const auto outcome = download("/status/404", to("a", {}));
  EXPECT_FALSE(outcome.error);
  EXPECT_EQ(bytesOf(path("a")), "status 404");
}

TEST_F(Download, BringsTheResponse) {
  const auto http = Foundation::httpResponse(download("/status/404", to("a", {})).response);
  ASSERT_NE(http, nullptr);
  EXPECT_EQ(http->statusCode(), 404);
}

TEST_F(Download, DestinationIsChosenWhileTheTemporaryFileIsThere) {
  std::string bytes;
  std::optional<URL> from;
  (void)download("/text", [&](const URL& temporaryURL, const Foundation::URLResponse& response) {
    bytes = bytesOf(temporaryURL.path());
    from = response.url();
    return to("a", {})(temporaryURL, response);
  });
  EXPECT_EQ(bytes, kText);
  EXPECT_EQ(from, address(server_.url("/text")));
}

TEST_F(Download, DefaultDestinationKeepsTheServersName) {
  const auto outcome = download("/file/report.pdf", &TQRequest::defaultDestination);
  ASSERT_TRUE(outcome.place);
  EXPECT_EQ(outcome.place->path(), temporary_.file("report.pdf"));
  EXPECT_EQ(bytesOf(temporary_.file("report.pdf")).size(), 10U);
}

TEST_F(Download, AnEmptyDestinationIsTheDefaultOne) {
  const auto outcome = download("/file/report.pdf", nullptr);
  ASSERT_TRUE(outcome.place);
  EXPECT_EQ(outcome.place->path(), temporary_.file("report.pdf"));
}

TEST_F(Download, WithoutANameInTheURLIsKeptUnderTheTemporaryOne) {
  server_.answer("/", [](::tests::Exchange& exchange) { exchange.respond(200, "home"); });
  std::string temporaryPath;
  const auto outcome =
      download("/", [&](const URL& temporaryURL, const Foundation::URLResponse& response) {
        temporaryPath = temporaryURL.path();
        return TQRequest::defaultDestination(temporaryURL, response);
      });
  ASSERT_TRUE(outcome.place) << outcome.error->localizedDescription();
  EXPECT_EQ(outcome.place->path(), temporaryPath);
  // A second download ends behind the first one's tidying up.
  (void)TQNetworking::shared().download(address(server_.url("/text")), {}, to("b", {}),
                                        completion());
  MainLoop::runFor(std::chrono::seconds(10));
  EXPECT_EQ(bytesOf(temporaryPath), "home");
}

TEST_F(Download, ReplacesAFileWhenAsked) {
  ::tests::write(path("a"), "old");
  EXPECT_FALSE(download("/text", to("a", kRemove)).error);
  EXPECT_EQ(bytesOf(path("a")), kText);
}

TEST_F(Download, OntoAFileFailsUnlessItMayBeReplaced) {
  ::tests::write(path("a"), "old");
  const auto outcome = download("/text", to("a", kCreate));
  EXPECT_EQ(outcome.place, std::nullopt);
  EXPECT_NE(outcome.response, nullptr);
  ASSERT_TRUE(outcome.error);
  EXPECT_EQ(outcome.error->domain(), "NSCocoaErrorDomain");
  EXPECT_EQ(outcome.error->code(), Foundation::NSFileWriteFileExistsError);
  EXPECT_EQ(outcome.thread, std::this_thread::get_id());
  EXPECT_EQ(bytesOf(path("a")), "old");
}

TEST_F(Download, OntoAFolderFailsAndLeavesIt) {
  fs::create_directory(path("a"));
  ::tests::write(path("a/b"), "kept");
  EXPECT_TRUE(download("/text", to("a", {kRemove, kCreate})).error);
  EXPECT_EQ(bytesOf(path("a/b")), "kept");
}

TEST_F(Download, MakesFoldersWhenAsked) {
  EXPECT_FALSE(download("/text", to("a/b/c", kCreate)).error);
  EXPECT_EQ(bytesOf(path("a/b/c")), kText);
}

TEST_F(Download, IntoAMissingFolderFailsUnlessItMayBeMade) {
  const auto outcome = download("/text", to("a/b/c", kRemove));
  ASSERT_TRUE(outcome.error);
  EXPECT_EQ(outcome.error->code(), Foundation::NSFileNoSuchFileError);
}

// --- failures ---

TEST_F(Download, ThatFailsChoosesNoDestination) {
  std::atomic<bool> isAsked = false;
  const auto outcome = download(
      "/early-close", [&](const URL& temporaryURL, const Foundation::URLResponse& response) {
        isAsked = true;
        return to("a", {})(temporaryURL, response);
      });
  EXPECT_FALSE(isAsked);
  EXPECT_EQ(outcome.place, std::nullopt);
  ASSERT_TRUE(outcome.error);
  EXPECT_EQ(outcome.error->domain(), Foundation::NSURLErrorDomain);
  EXPECT_EQ(outcome.error->code(), Foundation::NSURLErrorNetworkConnectionLost);
}

TEST_F(Download, ThatFailsBringsTheResponseThatCame) {
  EXPECT_NE(Foundation::httpResponse(download("/early-close", to("a", {})).response), nullptr);
}

TEST_F(Download, ThatIsCancelledCompletesOnceWithThePlatformsError) {
  const auto task = start("/stall", to("a", {}));
  ASSERT_TRUE(server_.waitForRequests(1));
  task->cancel();
  const auto outcome = end();
  ASSERT_TRUE(outcome.error);
  EXPECT_EQ(outcome.error->code(), Foundation::NSURLErrorCancelled);
  EXPECT_FALSE(fs::exists(path("a")));
  task->cancel();
  MainLoop::drain();
  EXPECT_EQ(outcomes_.size(), 1U);
}

// --- progress ---

TEST_F(Download, TellsBytesWrittenSoFarAndToCome) {
  recordProgress();
  ASSERT_FALSE(download("/bytes/300000", to("a", {})).error);
  ASSERT_FALSE(counts_.empty());
  std::int64_t sum = 0;
  for (const auto& count : counts_) {
    sum += count.written;
    EXPECT_EQ(count.total, sum);
    EXPECT_EQ(count.expected, 300000);
  }
  EXPECT_EQ(sum, 300000);
}

TEST_F(Download, WithoutALengthTellsANegativeNumberToCome) {
  recordProgress();
  ASSERT_FALSE(download("/no-length/5000", to("a", {})).error);
  ASSERT_FALSE(counts_.empty());
  for (const auto& count : counts_) EXPECT_LT(count.expected, 0);
  EXPECT_EQ(counts_.back().total, 5000);
}

TEST_F(Download, TellsProgressInTheBackground) {
  recordProgress();
  ASSERT_FALSE(download("/text", to("a", {})).error);
  ASSERT_FALSE(counts_.empty());
  EXPECT_NE(progressThread_, std::this_thread::get_id());
}

// --- the task and its completion ---

TEST_F(Download, IsStartedWhenItIsReturned) {
  const auto task = start("/wait", to("a", {}));
  ASSERT_NE(task, nullptr);
  EXPECT_EQ(task->state(), Foundation::URLSessionTask::State::running);
  EXPECT_TRUE(server_.waitForRequests(1));
  server_.openGate("answer");
  EXPECT_FALSE(end().error);
}

TEST_F(Download, CompletesOnTheMainQueue) {
  EXPECT_EQ(download("/text", to("a", {})).thread, std::this_thread::get_id());
}

TEST_F(Download, MovesTheFileBeforeTheMainQueueRuns) {
  (void)start("/text", lettingGo(to("a", {})));
  ASSERT_TRUE(isOver());
  EXPECT_EQ(bytesOf(path("a")), kText);
  EXPECT_TRUE(outcomes_.empty());
  EXPECT_FALSE(end().error);
}

TEST_F(Download, NeedsNoCompletion) {
  (void)TQNetworking::shared().download(address(server_.url("/text")), {}, lettingGo(to("a", {})),
                                        nullptr);
  ASSERT_TRUE(isOver());
  EXPECT_EQ(bytesOf(path("a")), kText);
}

TEST_F(Download, LetsGoOfItsProgressWhenItIsOver) {
  progress_ = [witness = tests::onDestruction([this] { released_.set_value(); })](
                  std::int64_t, std::int64_t, std::int64_t) {};
  ASSERT_FALSE(download("/text", to("a", {})).error);
  progress_ = nullptr;
  EXPECT_TRUE(isOver());
}

TEST_F(Download, LeavesNoTemporaryFileBehind) {
  ASSERT_FALSE(download("/text", to("a", {})).error);
  EXPECT_EQ(temporaryFiles(), 0U);
}

TEST_F(Download, ACompletionMayStartTheNextDownload) {
  (void)TQNetworking::shared().download(
      address(server_.url("/text")), {}, to("a", {}),
      [this](const std::optional<URL>&, const URLResponsePtr&, const std::optional<NSError>&) {
        (void)start("/text", to("b", {}));
      });
  EXPECT_FALSE(end().error);
  EXPECT_EQ(bytesOf(path("b")), kText);
}

}  // namespace
}  // namespace TQStoreKitLib
