#include "platform/embedded/Foundation/urlsession/DataTask.hpp"

#include <algorithm>
#include <cstddef>
#include <new>
#include <utility>

#include "platform/embedded/Foundation/URLLoading.hpp"
#include "platform/embedded/Foundation/urlsession/URLErrors.hpp"

namespace Foundation::detail {

namespace {

// Room is made ahead for so much; what a server only says it will send costs nothing beyond.
constexpr std::int64_t kMostRoomAhead = std::int64_t{16} << 20U;

}  // namespace

DataTask::DataTask(std::shared_ptr<URLSession::Implementation> session, URLRequest request,
                   URLSessionDataTask::Completion completion)
    : Implementation(std::move(session), std::move(request)), completion_(std::move(completion)) {}

std::optional<NSError> DataTask::begin(bool hasBody) {
  if (!hasBody) return std::nullopt;
  if (expected() > maximumDataLength()) return tooLong();
  body_.emplace();
  if (expected() > 0)
    body_->reserve(static_cast<std::size_t>(std::min(expected(), kMostRoomAhead)));
  return std::nullopt;
}

std::optional<NSError> DataTask::append(std::string_view bytes) {
  if (received() > maximumDataLength()) return tooLong();
  const auto* const first = reinterpret_cast<const std::byte*>(bytes.data());
  try {
    if (body_) body_->insert(body_->end(), first, first + bytes.size());
  } catch (const std::bad_alloc&) {
    return tooLong();
  }
  return std::nullopt;
}

NSError DataTask::tooLong() const {
  return urlError(NSURLErrorDataLengthExceedsMaximum, originalRequest().url());
}

void DataTask::complete(URLResponsePtr response, std::optional<NSError> error) {
  const auto completion = std::exchange(completion_, nullptr);
  if (error) body_.reset();
  auto body = std::exchange(body_, std::nullopt);
  if (completion) completion(std::move(body), std::move(response), std::move(error));
}

}  // namespace Foundation::detail
