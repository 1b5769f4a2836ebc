#pragma once

#include <curl/curl.h>

#include <optional>
#include <string_view>

#include "platform/embedded/Foundation/urlsession/SessionTask.hpp"

namespace Foundation::detail {

/// Collects the body in memory.
class DataTask final : public URLSessionTask::Implementation {
 public:
  DataTask(std::shared_ptr<URLSession::Implementation> session, URLRequest request,
           URLSessionDataTask::Completion completion);

 private:
  [[nodiscard]] long bufferSize() const override { return CURL_MAX_WRITE_SIZE; }
  std::optional<NSError> begin(bool hasBody) override;
  std::optional<NSError> append(std::string_view bytes) override;
  void complete(URLResponsePtr response, std::optional<NSError> error) override;
  [[nodiscard]] NSError tooLong() const;

  URLSessionDataTask::Completion completion_;
  std::optional<Data> body_;
};

}  // namespace Foundation::detail
