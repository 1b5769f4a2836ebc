#include "platform/apple/StoreKit/DownloadBridging.hpp"

#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Foundation/Bridging.hpp"
#include "platform/apple/StoreKit/TransactionBridging.hpp"

namespace StoreKit {

namespace {

using Foundation::askPlatform;
using Seconds = std::chrono::duration<double>;

// The older of two names of a property, which not every platform that we build for declares.
NSNumber* olderProperty(::SKDownload* download, NSString* name) {
  return [download valueForKey:name];
}

SKDownloadState stateOf(::SKDownload* download) {
  if (@available(iOS 12.0, macOS 10.15, *)) return static_cast<SKDownloadState>([download state]);
  return static_cast<SKDownloadState>([olderProperty(download, @"downloadState") longLongValue]);
}

std::int64_t lengthOf(::SKDownload* download) {
  if (@available(iOS 13.0, macOS 10.15, *)) return [download expectedContentLength];
  return [olderProperty(download, @"contentLength") longLongValue];
}

std::optional<Seconds> timeRemainingOf(::SKDownload* download) {
  const NSTimeInterval seconds = [download timeRemaining];
  if (seconds == SKDownloadTimeRemainingUnknown || !(seconds >= 0)) return std::nullopt;
  return Seconds(seconds);
}

class DownloadView final : public SKDownload {
 public:
  explicit DownloadView(::SKDownload* native)
      : native_(Foundation::Retained<::SKDownload*>::retain(native)) {}

  ::SKDownload* native() const { return native_.get(); }

  SKDownloadState state() const override {
    return askPlatform("SKDownload::state", SKDownloadState(), [&] { return stateOf(native()); });
  }

  std::string contentIdentifier() const override {
    return askPlatform("SKDownload::contentIdentifier", std::string(),
                       [&] { return Foundation::textFrom([native() contentIdentifier]); });
  }

  std::int64_t contentLength() const override {
    return askPlatform("SKDownload::contentLength", std::int64_t{0},
                       [&] { return lengthOf(native()); });
  }

  std::string contentVersion() const override {
    return askPlatform("SKDownload::contentVersion", std::string(),
                       [&] { return Foundation::textFrom([native() contentVersion]); });
  }

  std::optional<std::string> contentURL() const override {
    return askPlatform("SKDownload::contentURL", std::optional<std::string>(), [&] {
      return Foundation::optionalTextFrom([[native() contentURL] absoluteString]);
    });
  }

  float progress() const override {
    return askPlatform("SKDownload::progress", 0.0F, [&] { return [native() progress]; });
  }

  std::optional<Seconds> timeRemaining() const override {
    return askPlatform("SKDownload::timeRemaining", std::optional<Seconds>(),
                       [&] { return timeRemainingOf(native()); });
  }

  std::optional<Foundation::NSError> error() const override {
    return askPlatform("SKDownload::error", std::optional<Foundation::NSError>(),
                       [&] { return Foundation::optionalErrorFrom([native() error]); });
  }

  SKPaymentTransactionPtr transaction() const override {
    return askPlatform("SKDownload::transaction", SKPaymentTransactionPtr(),
                       [&] { return transactionFrom([native() transaction]); });
  }

  bool isEqual(const SKDownload& other) const override {
    const auto* const view = dynamic_cast<const DownloadView*>(&other);
    return view != nullptr && askPlatform("SKDownload::isEqual", false, [&] {
             return static_cast<bool>([native() isEqual:view->native()]);
           });
  }

  std::size_t hash() const override {
    return askPlatform("SKDownload::hash", std::size_t{0},
                       [&] { return std::size_t{[native() hash]}; });
  }

 private:
  Foundation::Retained<::SKDownload*> native_;
};

SKDownloadPtr downloadFrom(::SKDownload* download) {
  return std::make_shared<const DownloadView>(download);
}

}  // namespace

SKDownloads downloadsFrom(NSArray<::SKDownload*>* list) {
  return Foundation::listFrom(list, downloadFrom);
}

NSArray<::SKDownload*>* nativeDownloads(const SKDownloads& downloads) {
  NSMutableArray* const result = [NSMutableArray array];
  for (const auto& download : downloads) {
    const auto* const view = dynamic_cast<const DownloadView*>(download.get());
    if (view != nullptr) [result addObject:view->native()];
  }
  return result;
}

}  // namespace StoreKit
