#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Foundation/NSError.hpp"

namespace StoreKit {

class SKPaymentTransaction;

/// Where a download stands. Values that no enumerator has arrive unchanged.
enum class SKDownloadState : std::int64_t {
  waiting = 0,
  active = 1,
  paused = 2,
  finished = 3,
  failed = 4,
  cancelled = 5,
};

/// A piece of content that the store hosts for a product that was bought.
///
/// A live, read-only view, held by `SKDownloadPtr`: each member says what the platform says now.
/// A realisation derives from it and knows its own again when it comes back; a test may derive
/// a double.
/// Thread: main.
class SKDownload {
 public:
  SKDownload() = default;
  SKDownload(const SKDownload&) = delete;
  SKDownload& operator=(const SKDownload&) = delete;
  virtual ~SKDownload() = default;

  [[nodiscard]] virtual SKDownloadState state() const = 0;
  [[nodiscard]] virtual std::string contentIdentifier() const = 0;
  /// Bytes.
  [[nodiscard]] virtual std::int64_t contentLength() const = 0;
  /// Integers with points between them.
  [[nodiscard]] virtual std::string contentVersion() const = 0;
  /// URL of the folder with the content; absent until the download has finished, and void again
  /// once its transaction is finished.
  [[nodiscard]] virtual std::optional<std::string> contentURL() const = 0;
  /// 0 to 1. To learn that a download has ended, ask for its state.
  [[nodiscard]] virtual float progress() const = 0;
  /// Absent while the platform cannot tell.
  [[nodiscard]] virtual std::optional<std::chrono::duration<double>> timeRemaining() const = 0;
  /// Only of a failed download.
  [[nodiscard]] virtual std::optional<Foundation::NSError> error() const = 0;
  /// The transaction that the download belongs to. It is found at each call: a download does not
  /// keep its transaction alive. Null when it is gone.
  [[nodiscard]] virtual std::shared_ptr<const SKPaymentTransaction> transaction() const = 0;

  /// The platform's own equality; a double's is identity.
  [[nodiscard]] virtual bool isEqual(const SKDownload& other) const { return this == &other; }
  [[nodiscard]] virtual std::size_t hash() const { return std::hash<const SKDownload*>{}(this); }
};

using SKDownloadPtr = std::shared_ptr<const SKDownload>;
using SKDownloads = std::vector<SKDownloadPtr>;

}  // namespace StoreKit
