#pragma once

#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <mutex>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Foundation/URLError.hpp"
#include "platform/Foundation/URLSession.hpp"
#include "platform/embedded/Foundation/URLLoading.hpp"
#include "tests/fakes/TemporaryFolder.hpp"
#include "tests/server/HttpServer.hpp"

namespace tests {

inline Foundation::URL address(const std::string& text) {
  return *Foundation::URL::withString(text);
}

inline Foundation::URLRequest requestFor(const std::string& text) {
  return Foundation::URLRequest(address(text));
}

/// How a task ended.
struct Loaded {
  std::optional<Foundation::Data> data{};
  Foundation::URLResponsePtr response{};
  std::optional<Foundation::NSError> error{};
  /// Of a download: where the file was, and what was in it while the completion ran.
  std::optional<std::string> path{};
  std::string fileBytes{};

  [[nodiscard]] std::string text() const {
    return data ? std::string(Foundation::textInData(*data)) : "(none)";
  }
  [[nodiscard]] nlohmann::json json() const {
    return nlohmann::json::parse(text(), nullptr, false);
  }
  [[nodiscard]] std::int64_t status() const {
    const auto http = Foundation::httpResponse(response);
    return http ? http->statusCode() : 0;
  }
  [[nodiscard]] std::string field(const std::string& name) const {
    const auto http = Foundation::httpResponse(response);
    return http ? http->value(name).value_or("(none)") : "(no answer)";
  }
  /// 0 without an error.
  [[nodiscard]] std::int64_t code() const { return error ? error->code() : 0; }
  [[nodiscard]] std::string message() const { return error ? error->localizedDescription() : ""; }
};

/// Collects what tasks end with, and lets a test wait for it.
class Endings {
 public:
  void add(Loaded loaded) {
    const std::lock_guard lock(mutex_);
    endings_.push_back(std::move(loaded));
    changed_.notify_all();
  }

  Foundation::URLSessionDataTask::Completion forData() {
    return [this](auto data, auto response, auto error) {
      add({.data = std::move(data), .response = std::move(response), .error = std::move(error)});
    };
  }
  Foundation::URLSessionDownloadTask::Completion forDownload() {
    return [this](auto file, auto response, auto error) {
      Loaded loaded{.response = std::move(response), .error = std::move(error)};
      if (file) {
        loaded.path = file->path();
        loaded.fileBytes = bytesOf(file->path());
      }
      add(std::move(loaded));
    };
  }

  /// False when so many have not ended within twenty seconds.
  [[nodiscard]] bool waitFor(std::size_t count) const {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(20),
                             [&] { return endings_.size() >= count; });
  }
  [[nodiscard]] std::vector<Loaded> all() const {
    const std::lock_guard lock(mutex_);
    return endings_;
  }
  /// The first one, waited for.
  [[nodiscard]] Loaded first() const { return waitFor(1) ? all().front() : neverEnded(); }
  [[nodiscard]] Loaded last() const { return all().empty() ? neverEnded() : all().back(); }

 private:
  static Loaded neverEnded() {
    return {.error = Foundation::NSError::withDescription("test", 1, "the task never ended")};
  }

  mutable std::mutex mutex_;
  mutable std::condition_variable changed_;
  std::vector<Loaded> endings_;
};

inline std::shared_ptr<Foundation::URLSession> newSession() {
  return Foundation::URLSession::withDelegate(nullptr);
}

inline Loaded load(Foundation::URLSession& session, Foundation::URLRequest request) {
  Endings endings;
  session.dataTask(std::move(request), endings.forData())->resume();
  return endings.first();
}

inline Loaded load(Foundation::URLRequest request) {
  return load(*newSession(), std::move(request));
}
inline Loaded load(const std::string& url) { return load(requestFor(url)); }

inline Loaded download(Foundation::URLSession& session, const std::string& url) {
  Endings endings;
  session.downloadTask(address(url), endings.forDownload())->resume();
  return endings.first();
}
inline Loaded download(const std::string& url) { return download(*newSession(), url); }

/// Temporary files of downloads go into a folder of the test's own.
class DownloadsInFolder {
 public:
  DownloadsInFolder() { Foundation::setDownloadFolder(folder_.path()); }
  ~DownloadsInFolder() { Foundation::setDownloadFolder(std::nullopt); }
  DownloadsInFolder(const DownloadsInFolder&) = delete;
  DownloadsInFolder& operator=(const DownloadsInFolder&) = delete;

  [[nodiscard]] std::string path() const { return folder_.path(); }
  [[nodiscard]] std::size_t files() const {
    const std::filesystem::directory_iterator entries(folder_.path());
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
  }

 private:
  TemporaryFolder folder_;
};

/// True as soon as the condition holds; false when it doesn't within ten seconds.
inline bool eventually(const std::function<bool()>& condition) {
  for (int look = 0; look < 2000; ++look) {
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return false;
}

}  // namespace tests
