#include "platform/embedded/store/downloads/HostedDownload.hpp"

#include <algorithm>
#include <functional>
#include <utility>

#include "platform/Foundation/URL.hpp"

namespace StoreKit {

namespace {

namespace fs = std::filesystem;

// Bytes of one turn.
constexpr std::int64_t kPiece = std::int64_t{256} * 1024;

bool canCancel(SKDownloadState state) {
  return state == SKDownloadState::waiting || state == SKDownloadState::active ||
         state == SKDownloadState::paused;
}

}  // namespace

HostedDownload::HostedDownload(const std::shared_ptr<const LedgerTransaction>& transaction,
                               HostedContent content, std::int64_t length)
    : ledger_(transaction->ledger()),
      number_(transaction->entry().identifier),
      transaction_(transaction),
      product_(transaction->entry().payment.productIdentifier),
      content_(std::move(content)),
      length_(length) {}

std::optional<std::string> HostedDownload::contentURL() const {
  if (arrived_.empty()) return std::nullopt;
  return Foundation::URL::fileURLWithPath(arrived_.string()).absoluteString();
}

float HostedDownload::progress() const {
  if (state_ == SKDownloadState::finished) return 1;
  if (length_ == 0) return 0;
  return static_cast<float>(static_cast<double>(copied_) / static_cast<double>(length_));
}

std::optional<std::chrono::duration<double>> HostedDownload::timeRemaining() const {
  if (!secondsLeft_) return std::nullopt;
  return std::chrono::duration<double>(*secondsLeft_);
}

std::shared_ptr<const SKPaymentTransaction> HostedDownload::transaction() const {
  return transaction_.lock();
}

bool HostedDownload::isEqual(const SKDownload& other) const {
  const auto* download = dynamic_cast<const HostedDownload*>(&other);
  return download && download->ledger_ == ledger_ && download->number_ == number_;
}

std::size_t HostedDownload::hash() const { return std::hash<std::int64_t>{}(number_); }

bool HostedDownload::canStart() const {
  return state_ == SKDownloadState::waiting || state_ == SKDownloadState::failed ||
         state_ == SKDownloadState::cancelled;
}

void HostedDownload::start(Foundation::Date now, fs::path into, Failure failure) {
  end(SKDownloadState::active, std::nullopt);
  copied_ = 0;
  into_ = std::move(into);
  orderedFailure_ = std::move(failure);
  changePace(now);
}

bool HostedDownload::pause() {
  if (!isActive()) return false;
  state_ = SKDownloadState::paused;
  secondsLeft_.reset();
  return true;
}

bool HostedDownload::resume(Foundation::Date now) {
  if (state_ != SKDownloadState::paused) return false;
  state_ = SKDownloadState::active;
  changePace(now);
  return true;
}

bool HostedDownload::cancel() {
  if (!canCancel(state_)) return false;
  end(SKDownloadState::cancelled, std::nullopt);
  return true;
}

bool HostedDownload::advance(Foundation::Date now, int speed) {
  if (!isActive()) return false;
  const auto before = copied_;
  auto failure = copy_ ? std::nullopt : beginCopy();
  if (!failure) failure = speed > 0 ? copyUntil(pace_.due(now, speed)) : copyPiece();
  if (!failure && orderedFailure_ && copied_ >= failsAt()) failure = orderedFailure_;
  if (!failure && copy_->isWhole()) failure = arrive();
  if (failure) end(SKDownloadState::failed, std::move(failure));
  if (isActive()) estimate(now, speed);
  return !isActive() || copied_ != before;
}

HostedDownload::Failure HostedDownload::beginCopy() {
  auto reading = listContent(content_.folder);
  if (reading.error) return reading.error;
  length_ = reading.listing.length();
  copy_ = std::make_unique<ContentCopy>(content_.folder, std::move(reading.listing), into_);
  return std::nullopt;
}

HostedDownload::Failure HostedDownload::copyPiece() {
  const auto most = orderedFailure_ ? std::min(kPiece, failsAt() - copied_) : kPiece;
  auto failure = copy_->copy(most);
  copied_ = copy_->copied();
  return failure;
}

HostedDownload::Failure HostedDownload::copyUntil(std::int64_t end) {
  end = std::max(copied_, std::min(end, orderedFailure_ ? failsAt() : length_));
  for (;;) {
    if (auto failure = copy_->copy(std::min(kPiece, end - copied_))) return failure;
    copied_ = copy_->copied();
    if (copied_ >= end) return std::nullopt;
  }
}

HostedDownload::Failure HostedDownload::arrive() {
  auto arrival = copy_->arrive();
  if (arrival.error) return arrival.error;
  end(SKDownloadState::finished, std::nullopt);
  arrived_ = std::move(arrival.folder);
  return std::nullopt;
}

bool HostedDownload::discard() {
  std::error_code ignored;
  if (const auto folder = std::exchange(arrived_, {}); !folder.empty()) {
    fs::remove_all(folder, ignored);
  }
  return state_ != SKDownloadState::waiting && cancel();
}

void HostedDownload::interrupt() {
  if (!canCancel(state_)) return;
  end(SKDownloadState::waiting, std::nullopt);
  copied_ = 0;
}

void HostedDownload::end(SKDownloadState state, Failure error) {
  state_ = state;
  error_ = std::move(error);
  orderedFailure_.reset();
  secondsLeft_.reset();
  if (state == SKDownloadState::finished) secondsLeft_ = 0;
  copy_.reset();
}

void HostedDownload::estimate(Foundation::Date now, int speed) {
  secondsLeft_ = pace_.secondsFor(length_ - copied_, copied_, now, speed);
}

}  // namespace StoreKit
