#pragma once

#import <Foundation/Foundation.h>

#include <memory>
#include <mutex>
#include <optional>

#include "platform/Foundation/URLSession.hpp"
#include "platform/apple/Foundation/urlsession/DownloadedFile.hpp"
#include "platform/apple/Retained.hpp"

namespace Foundation {

/// A task of ours, and the platform's task that does the work; of a request that cannot be sent,
/// there is none.
///
/// Thread: any; what the platform says comes on the session's queue.
class URLSessionTask::Implementation : public std::enable_shared_from_this<Implementation> {
 public:
  using SessionPtr = std::shared_ptr<URLSession::Implementation>;

  Implementation(SessionPtr session, URLRequest request, URLSessionDataTask::Completion completion);
  Implementation(SessionPtr session, URLRequest request,
                 URLSessionDownloadTask::Completion completion);
  ~Implementation();
  Implementation(const Implementation&) = delete;
  Implementation& operator=(const Implementation&) = delete;

  [[nodiscard]] NSURLSessionTask* native() const { return native_.get(); }
  [[nodiscard]] const URLRequest& request() const { return request_; }
  [[nodiscard]] State state() const;
  [[nodiscard]] std::int64_t received() const;
  [[nodiscard]] std::int64_t expected() const;

  void resume();
  void cancel();

  void receive(NSData* data);
  void wrote(std::int64_t bytes, std::int64_t total, std::int64_t expected);
  void finishDownload(NSURL* location);
  void completeNative(::NSError* error);

 private:
  struct Outcome;

  void prepare(bool isDownload);
  [[nodiscard]] bool advance(State from, State to);
  void completeSoon(const NSError& error);
  void complete(URLResponsePtr response, std::optional<NSError> error);
  void deliver(Outcome outcome);

  SessionPtr session_;
  URLRequest request_;
  Retained<NSURLSessionTask*> native_;
  std::optional<NSError> problem_;

  mutable std::mutex mutex_;
  State state_ = State::suspended;
  std::int64_t received_ = 0;
  Data body_;
  std::unique_ptr<DownloadedFile> file_;
  URLSessionDataTask::Completion dataCompletion_;
  URLSessionDownloadTask::Completion downloadCompletion_;
};

}  // namespace Foundation
