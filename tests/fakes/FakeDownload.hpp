#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/StoreKit/SKDownload.hpp"

namespace TQStoreKitLib::tests {

/// A download that nobody carries out.
class FakeDownload final : public StoreKit::SKDownload {
 public:
  explicit FakeDownload(std::string identifier) : identifier_(std::move(identifier)) {}

  [[nodiscard]] StoreKit::SKDownloadState state() const override {
    return StoreKit::SKDownloadState::waiting;
  }
  [[nodiscard]] std::string contentIdentifier() const override { return identifier_; }
  [[nodiscard]] std::int64_t contentLength() const override { return 0; }
  [[nodiscard]] std::string contentVersion() const override { return "1.0"; }
  [[nodiscard]] std::optional<std::string> contentURL() const override { return std::nullopt; }
  [[nodiscard]] float progress() const override { return 0; }
  [[nodiscard]] std::optional<std::chrono::duration<double>> timeRemaining() const override {
    return std::nullopt;
  }
  [[nodiscard]] std::optional<Foundation::NSError> error() const override { return std::nullopt; }
  [[nodiscard]] std::shared_ptr<const StoreKit::SKPaymentTransaction> transaction() const override {
    return nullptr;
  }

 private:
  std::string identifier_;
};

inline StoreKit::SKDownloadPtr aDownload(const std::string& identifier) {
  return std::make_shared<const FakeDownload>(identifier);
}

}  // namespace TQStoreKitLib::tests
