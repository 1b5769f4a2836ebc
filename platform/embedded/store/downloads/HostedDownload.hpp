#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/StoreKit/SKDownload.hpp"
#include "platform/embedded/store/LedgerTransaction.hpp"
#include "platform/embedded/store/downloads/ContentCopy.hpp"
#include "platform/embedded/store/downloads/DownloadPace.hpp"
#include "platform/embedded/store/downloads/HostedContent.hpp"

namespace StoreKit {

/// A download of the embedded store: the content that it hosts for the product of one transaction.
///
/// Two are equal when they are of one entry of one ledger.
/// Thread: main.
class HostedDownload final : public SKDownload {
 public:
  /// `length` is that of the content as far as it is known: bytes.
  HostedDownload(const std::shared_ptr<const LedgerTransaction>& transaction, HostedContent content,
                 std::int64_t length);

  [[nodiscard]] SKDownloadState state() const override { return state_; }
  /// The product's identifier.
  [[nodiscard]] std::string contentIdentifier() const override { return product_; }
  [[nodiscard]] std::int64_t contentLength() const override { return length_; }
  [[nodiscard]] std::string contentVersion() const override { return content_.version; }
  [[nodiscard]] std::optional<std::string> contentURL() const override;
  [[nodiscard]] float progress() const override;
  [[nodiscard]] std::optional<std::chrono::duration<double>> timeRemaining() const override;
  [[nodiscard]] std::optional<Foundation::NSError> error() const override { return error_; }
  [[nodiscard]] std::shared_ptr<const SKPaymentTransaction> transaction() const override;
  [[nodiscard]] bool isEqual(const SKDownload& other) const override;
  [[nodiscard]] std::size_t hash() const override;

  [[nodiscard]] std::uint64_t ledger() const { return ledger_; }
  [[nodiscard]] std::int64_t transactionNumber() const { return number_; }
  [[nodiscard]] bool isActive() const { return state_ == SKDownloadState::active; }

  /// A waiting one, or one that failed or was cancelled.
  [[nodiscard]] bool canStart() const;
  /// Begins from nothing. The content arrives in a new folder in `into`; with `failure`, it fails
  /// half-way.
  void start(Foundation::Date now, std::filesystem::path into,
             std::optional<Foundation::NSError> failure);

  // The next ones answer whether observers are to hear of it; where the state does not allow it,
  // nothing changes.

  bool pause();
  bool resume(Foundation::Date now);
  bool cancel();
  /// What an active one does at `now`: with a speed, it takes in what has come by then; without (0),
  /// one piece.
  bool advance(Foundation::Date now, int speed);
  /// Its transaction has left the queue: what was downloaded is removed, and what is under way is
  /// cancelled.
  bool discard();

  /// The program that has it ends: what is under way is given up, what is there stays.
  void interrupt();
  /// Bytes come at another speed from now on.
  void changePace(Foundation::Date now) { pace_ = {.begin = now, .atBegin = copied()}; }

 private:
  using Failure = ContentCopy::Failure;

  [[nodiscard]] std::int64_t copied() const { return copied_; }
  [[nodiscard]] Failure beginCopy();
  [[nodiscard]] Failure copyUntil(std::int64_t end);
  [[nodiscard]] Failure copyPiece();
  [[nodiscard]] Failure arrive();
  [[nodiscard]] std::int64_t failsAt() const { return length_ / 2; }
  void end(SKDownloadState state, std::optional<Foundation::NSError> error);
  void estimate(Foundation::Date now, int speed);

  std::uint64_t ledger_;
  std::int64_t number_;
  std::weak_ptr<const LedgerTransaction> transaction_;
  std::string product_;
  HostedContent content_;
  std::int64_t length_;
  SKDownloadState state_ = SKDownloadState::waiting;
  std::int64_t copied_ = 0;
  std::optional<double> secondsLeft_{};
  std::optional<Foundation::NSError> error_{};
  std::optional<Foundation::NSError> orderedFailure_{};
  std::filesystem::path into_{};
  std::filesystem::path arrived_{};  // empty until it has finished
  std::unique_ptr<ContentCopy> copy_{};
  DownloadPace pace_{};
};

}  // namespace StoreKit
