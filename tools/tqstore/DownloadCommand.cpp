#include "tools/tqstore/DownloadCommand.hpp"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "platform/Foundation/FileManager.hpp"
#include "platform/Foundation/URL.hpp"
#include "platform/StoreKit/SKPaymentQueue.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "tools/tqstore/Interruption.hpp"
#include "tools/tqstore/Patience.hpp"
#include "tools/tqstore/ProgressBar.hpp"
#include "tools/tqstore/StoreOpening.hpp"
#include "tools/tqstore/TransactionText.hpp"

namespace tqstore {

namespace {

namespace fs = std::filesystem;
using Foundation::URL;
using StoreKit::SKDownload;
using StoreKit::SKDownloadPtr;
using State = StoreKit::SKDownloadState;

struct Arguments {
  std::string transaction;
  std::string destination;
};

StoreKit::SKPaymentQueue& queue() { return StoreKit::SKPaymentQueue::defaultQueue(); }

StoreKit::DownloadQueue& downloads() { return StoreKit::EmbeddedStore::current().downloads(); }

// Null when the queue has none for that transaction.
SKDownloadPtr downloadOf(std::int64_t transaction) {
  for (const auto& each : queue().transactions()) {
    const auto entry = entryOf(each);
    if (!entry || entry->identifier != transaction || each->downloads().empty()) continue;
    return each->downloads().front();
  }
  return nullptr;
}

// Null, with a word on standard error, when there is nothing to download.
SKDownloadPtr findDownload(const std::string& transaction) {
  const auto entry = findEntry(ledger(), transaction);
  const auto download = entry ? downloadOf(entry->identifier) : nullptr;
  if (!entry) {
    complain("there is no transaction " + printable(transaction));
  } else if (entry->finished) {
    complain("transaction " + printable(transaction) + " is finished: nothing can be downloaded");
  } else if (!download) {
    complain("transaction " + printable(transaction) + " is " + stateText(*entry) + " and " +
             printable(entry->payment.productIdentifier) + " has no hosted content for it");
  }
  return download;
}

bool hasEnded(const SKDownload& download) {
  const auto state = download.state();
  return state == State::finished || state == State::failed || state == State::cancelled;
}

void show(const SKDownload& download, ProgressBar& bar) {
  const auto length = download.contentLength();
  bar.show(static_cast<std::int64_t>(download.progress() * static_cast<double>(length)), length);
}

// The first interruption cancels the download, which removes what has come so far.
void run(const SKDownloadPtr& download) {
  const Interruption interruption;
  ProgressBar bar(printable(download->contentIdentifier()));
  downloads().listen([&](const StoreKit::SKDownloads&) {
    show(*download, bar);
    if (hasEnded(*download)) Dispatch::MainLoop::stop();
  });
  queue().startDownloads({download});
  Dispatch::MainLoop::run();
  if (!hasEnded(*download)) queue().cancelDownloads({download});
  runQueued();
  downloads().listen(nullptr);
}

std::optional<URL> contentsOf(const SKDownload& download) {
  const auto url = URL::withString(download.contentURL().value_or(""));
  return url ? std::optional<URL>(url->appendingPathComponent("Contents")) : std::nullopt;
}

void tell(const SKDownload& download, const std::string& folder, bool json) {
  if (!json) return writeLine(printable(folder));
  const auto entry = entryOf(download.transaction());
  writeJson({{"identifier", entry ? Json(std::to_string(entry->identifier)) : Json(nullptr)},
             {"productIdentifier", download.contentIdentifier()},
             {"contentVersion", download.contentVersion()},
             {"contentLength", download.contentLength()},
             {"contentURL", download.contentURL().value_or("")},
             {"folder", folder}});
}

ExitStatus deliver(const SKDownload& download, const std::string& destination, bool json) {
  const auto contents = contentsOf(download);
  if (!contents) {
    const auto error = download.error();
    complain(error ? printable(error->localizedDescription()) : "the download was cancelled");
    return kRefused;
  }
  auto folder = *contents;
  if (!destination.empty()) {
    folder = URL::fileURLWithPath(destination);
    auto& manager = Foundation::FileManager::defaultManager();
    if (const auto error = manager.copyItem(*contents, folder)) {
      complain(printable(error->localizedDescription()));
      return kRefused;
    }
  }
  tell(download, folder.path(), json);
  return kDone;
}

ExitStatus downloadContent(const Arguments& arguments, const GlobalOptions& options) {
  std::error_code ignored;
  if (fs::exists(fs::symlink_status(arguments.destination, ignored))) {
    complain(printable(arguments.destination) + " is there already");
    return kRefused;
  }
  const auto download = findDownload(arguments.transaction);
  if (!download) return kRefused;
  run(download);
  return deliver(*download, arguments.destination, options.json);
}

Manual manual() {
  return {.group = "The ledger",
          .summary = "Download the content of what was bought",
          .description =
              "Starts the download of a transaction that is purchased or restored and not "
              "finished, shows on a terminal how far it has come, and prints the folder with the "
              "files. They are in your caches, and are removed when the transaction is finished; "
              "given a DESTINATION, a folder that is not there yet, they are copied there.\n"
              "\n"
              "What is hosted for a product, and how fast it comes, are settings:\n"
              "\n"
              " tqstore settings hostedContent.PRODUCT FOLDER\n"
              " tqstore settings hostedContentVersion.PRODUCT 1.0\n"
              " tqstore settings downloadSpeed 100000\n"
              "\n"
              "When it is interrupted nothing is left.",
          .refusal =
              "The transaction has nothing to download, the download failed or was interrupted, or "
              "DESTINATION is there already.",
          .examples =
              " tqstore --config shop.storekit download 3\n"
              " tqstore --config shop.storekit download 3 ./level-pack\n"};
}

}  // namespace

void addDownload(CommandLine& line) {
  const auto arguments = std::make_shared<Arguments>();
  auto command = line.add("download", manual(), [arguments, &options = line.options()](auto&) {
    return downloadContent(*arguments, options);
  });
  command
      .addOption("TRANSACTION", arguments->transaction,
                 "Its number in the ledger, or its identifier")
      .required();
  command.addOption("DESTINATION", arguments->destination, "A folder that is not there yet");
}

}  // namespace tqstore
