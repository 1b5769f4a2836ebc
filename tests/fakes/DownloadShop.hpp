#pragma once

#include <cmath>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/Foundation/URL.hpp"
#include "tests/fakes/OpenShop.hpp"
#include "tests/fakes/TemporaryFolder.hpp"

namespace tests {

/// "crown active 25%, cape finished 100%".
inline std::string describe(const StoreKit::SKDownloads& downloads) {
  static constexpr const char* kStates[] = {"waiting",  "active", "paused",
                                            "finished", "failed", "cancelled"};
  std::string text;
  for (const auto& download : downloads) {
    text += text.empty() ? "" : ", ";
    text += download->contentIdentifier() + " " +
            kStates[static_cast<std::size_t>(download->state())] + " " +
            std::to_string(std::lround(download->progress() * 100)) + "%";
  }
  return text;
}

/// Writes down what is said of downloads, and of removals, then runs the hook. A hook may destroy
/// the observer.
class DownloadObserver final : public StoreKit::SKPaymentTransactionObserver {
 public:
  DownloadObserver() { observe(); }
  ~DownloadObserver() override { stop(); }

  void observe() { StoreKit::SKPaymentQueue::defaultQueue().addTransactionObserver(*this); }
  void stop() { StoreKit::SKPaymentQueue::defaultQueue().removeTransactionObserver(*this); }

  std::shared_ptr<Journal> journal = std::make_shared<Journal>();
  std::function<void(const StoreKit::SKDownloads&)> onDownloads;
  std::function<void(const StoreKit::SKPaymentTransactions&)> onRemoved;

  void paymentQueueUpdatedTransactions(const StoreKit::SKPaymentTransactions&) override {}
  void paymentQueueRemovedTransactions(const StoreKit::SKPaymentTransactions& removed) override {
    journal->push_back("removed: " + describe(removed));
    if (const auto hook = onRemoved) hook(removed);
  }
  void paymentQueueUpdatedDownloads(const StoreKit::SKDownloads& downloads) override {
    journal->push_back(describe(downloads));
    if (const auto hook = onDownloads) hook(downloads);
  }
};

/// A clock that stands still until it is moved.
struct StandingClock {
  std::shared_ptr<double> moment = std::make_shared<double>(1000.0);

  [[nodiscard]] StoreKit::StoreSources sources() const {
    auto sources = countingSources();
    sources.now = [moment = moment] { return Foundation::Date::sinceEpoch(*moment); };
    return sources;
  }
};

/// By name, with folders: {"pages/1.txt", "Once upon a time"}.
using Files = std::map<std::string, std::string>;

inline void writeAll(const std::string& folder, const Files& files) {
  std::filesystem::create_directories(folder);
  for (const auto& [name, bytes] : files) {
    const auto path = std::filesystem::path(folder) / name;
    std::filesystem::create_directories(path.parent_path());
    write(path.string(), bytes);
  }
}

/// Everything that is in a folder, at whatever depth.
inline Files filesIn(const std::string& folder) {
  Files files;
  for (const auto& item : std::filesystem::recursive_directory_iterator(folder)) {
    if (!item.is_regular_file()) continue;
    files[item.path().lexically_relative(folder).string()] = bytesOf(item.path().string());
  }
  return files;
}

/// A shop that hosts content: of "crown" four files of 25 bytes, of "cape" two of 10. Downloads
/// arrive in a folder of the test's own.
class DownloadShop {
 public:
  DownloadShop() {
    shop.session.setDownloadsFolder(caches());
    host("crown", {{"a", std::string(25, 'a')},
                   {"b", std::string(25, 'b')},
                   {"more/c", std::string(25, 'c')},
                   {"more/d", std::string(25, 'd')}});
    host("cape", {{"1", std::string(10, '1')}, {"2", std::string(10, '2')}});
    (void)turnUntilIdle();
  }

  void host(const std::string& product, const Files& files) {
    std::filesystem::remove_all(hosted(product));
    writeAll(hosted(product), files);
    if (shop.session.setHostedContent(product, hosted(product))) throw std::logic_error(product);
  }

  [[nodiscard]] std::string hosted(const std::string& product) const {
    return folder.file("hosted/" + product);
  }
  [[nodiscard]] std::string caches() const { return folder.file("caches"); }
  /// What is in the folder that downloads arrive in, whole or not.
  [[nodiscard]] Files arrived() const {
    return std::filesystem::exists(caches()) ? filesIn(caches()) : Files();
  }

  /// Buys, and answers with the one download of the transaction.
  [[nodiscard]] StoreKit::SKDownloadPtr buy(const std::string& product) const {
    return shop.buy(product)->downloads().at(0);
  }

  static StoreKit::SKPaymentQueue& queue() { return OpenShop::queue(); }

  void moveClock(double seconds) {
    *clock.moment += seconds;
    shop.session.clockDidChange();
    (void)turnUntilIdle();
  }

  TemporaryFolder folder;
  StandingClock clock;
  OpenShop shop{tests::shop(), clock.sources()};
};

/// The folder that a finished download's URL names.
inline std::string contentFolder(const StoreKit::SKDownload& download) {
  const auto url = Foundation::URL::withString(download.contentURL().value_or(""));
  return url && url->isFileURL() ? url->path() : "";
}

}  // namespace tests
