#include "platform/embedded/store/StoreSession.hpp"

#include <utility>

#include "platform/Foundation/Print.hpp"
#include "platform/embedded/store/MemoryLedger.hpp"
#include "platform/embedded/store/StoreSettings.hpp"
#include "platform/embedded/store/ledger/LedgerPlace.hpp"
#include "platform/embedded/store/ledger/SqliteLedger.hpp"
#include "platform/embedded/store/server/StoreServer.hpp"

namespace StoreKit {

namespace {

EmbeddedStore& store() { return EmbeddedStore::current(); }

StoreServer server() { return StoreServer(store()); }

}  // namespace

StoreSession::Opening StoreSession::open(const std::string& path, Options options) {
  auto reading = readConfiguration(path);
  Opening opening;
  opening.problems = std::move(reading.problems);
  if (!reading.configuration) return opening;
  auto ledger = SqliteLedger::open(options.ledger.empty() ? ledgerPathFor(path) : options.ledger);
  opening.ledgerError = std::move(ledger.error);
  if (!ledger.ledger) return opening;
  opening.session = std::make_unique<StoreSession>(
      std::move(*reading.configuration), std::move(options.sources), std::move(ledger.ledger));
  return opening;
}

StoreSession::StoreSession(StoreConfiguration configuration, StoreSources sources,
                           std::unique_ptr<Ledger> ledger) {
  if (!ledger) ledger = std::make_unique<MemoryLedger>();
  EmbeddedStore::unopened().open(std::move(configuration), std::move(ledger), std::move(sources));
}

const Catalogue& StoreSession::catalogue() const { return store().catalogue(); }

const StoreConfiguration::Settings& StoreSession::settings() const { return store().settings(); }

std::optional<std::string> StoreSession::setting(std::string_view name) const {
  return settingText(settings(), name);
}

StoreSession::Failure StoreSession::set(std::string_view name, const std::string& value) {
  return store().set(name, value);
}

void StoreSession::setFlag(std::string_view name, bool value) {
  if (const auto error = set(name, value ? "true" : "false")) {
    Foundation::warn("A setting stays as it is: " + error->localizedDescription());
  }
}

void StoreSession::resetToDefaultState() { store().resetToDefaultState(); }

SKError::Code StoreSession::failureError() const {
  return static_cast<SKError::Code>(settings().failureError);
}

void StoreSession::setFailureError(SKError::Code code) {
  if (const auto error = set("failureError", std::to_string(static_cast<int>(code)))) {
    Foundation::warn("A setting stays as it is: " + error->localizedDescription());
  }
}

StoreSession::Failure StoreSession::setAnswerDelay(double seconds) {
  return set("answerDelay", secondsText(seconds));
}

void StoreSession::failPurchases(SKError::Code code, std::size_t count) {
  store().scenario().purchases.order(SKError(code).nsError(), count);
}

void StoreSession::cancelPurchases(std::size_t count) {
  failPurchases(SKError::Code::paymentCancelled, count);
}

void StoreSession::failProductsRequests(const Foundation::NSError& error, std::size_t count) {
  store().scenario().productsRequests.order(error, count);
}

void StoreSession::failRestore(const Foundation::NSError& error, std::size_t after) {
  store().scenario().restores.push_back({error, after});
}

void StoreSession::failDownloads(const Foundation::NSError& error, std::size_t count) {
  store().scenario().downloads.order(error, count);
}

StoreSession::Failure StoreSession::setHostedContent(const std::string& productIdentifier,
                                                     const std::string& folder,
                                                     const std::string& version) {
  const auto versionName = "hostedContentVersion." + productIdentifier;
  const auto before = setting(versionName);
  if (auto error = set(versionName, version)) return error;
  auto error = set("hostedContent." + productIdentifier, folder);
  if (error) (void)store().set(versionName, before);
  return error;
}

void StoreSession::setDownloadsFolder(const std::string& folder) {
  store().downloads().moveTo(DownloadPlace(store().ledger().path(), folder));
}

void StoreSession::setAnswersProductsInBackground(bool background) {
  store().scenario().answersProductsInBackground = background;
}

std::vector<StoreTransaction> StoreSession::allTransactions() const {
  store().renewSubscriptions();
  std::vector<StoreTransaction> transactions;
  for (const auto& entry : store().ledger().all()) {
    transactions.push_back(StoreTransaction::of(entry));
  }
  return transactions;
}

StoreSession::Failure StoreSession::clearTransactions() { return server().clear(); }

StoreSession::Failure StoreSession::deleteTransaction(std::int64_t identifier) {
  return server().remove(identifier);
}

StoreSession::Failure StoreSession::buyProduct(const std::string& productIdentifier) {
  return server().buy(productIdentifier);
}

StoreSession::Failure StoreSession::beginStorePurchase(const std::string& productIdentifier) {
  return server().begin(productIdentifier);
}

StoreSession::Failure StoreSession::refundTransaction(std::int64_t identifier) {
  return server().refund(identifier);
}

StoreSession::Failure StoreSession::approveAskToBuyTransaction(std::int64_t identifier) {
  return server().approve(identifier);
}

StoreSession::Failure StoreSession::declineAskToBuyTransaction(std::int64_t identifier) {
  return server().decline(identifier);
}

StoreSession::Failure StoreSession::resolveIssueForTransaction(std::int64_t identifier) {
  return server().resolve(identifier);
}

StoreSession::Failure StoreSession::enableAutoRenewForTransaction(std::int64_t identifier) {
  return server().setAutoRenew(identifier, true);
}

StoreSession::Failure StoreSession::disableAutoRenewForTransaction(std::int64_t identifier) {
  return server().setAutoRenew(identifier, false);
}

StoreSession::Failure StoreSession::forceRenewalOfSubscription(
    const std::string& productIdentifier) {
  return server().forceRenewal(productIdentifier);
}

StoreSession::Failure StoreSession::expireSubscription(const std::string& productIdentifier) {
  return server().expire(productIdentifier);
}

StoreSession::Failure StoreSession::requestPriceIncreaseConsentForTransaction(
    std::int64_t identifier) {
  return server().requestPriceIncrease(identifier);
}

StoreSession::Failure StoreSession::consentToPriceIncreaseForTransaction(std::int64_t identifier) {
  return server().answerPriceIncrease(identifier, true);
}

StoreSession::Failure StoreSession::declinePriceIncreaseForTransaction(std::int64_t identifier) {
  return server().answerPriceIncrease(identifier, false);
}

void StoreSession::relaunch() { store().queue().restart(); }

void StoreSession::setIsForApplication(bool isForApplication) {
  EmbeddedStore::unopened().setForApplication(isForApplication);
}

void StoreSession::clockDidChange() { store().catchUp(); }

}  // namespace StoreKit
