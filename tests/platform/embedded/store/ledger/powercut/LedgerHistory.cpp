#include "tests/platform/embedded/store/ledger/powercut/LedgerHistory.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace tests {

namespace {

using StoreKit::Ledger;
using StoreKit::LedgerEntries;
using StoreKit::LedgerEntry;

std::string text(const std::optional<Foundation::Date>& date) {
  std::array<char, 40> digits{};
  if (date) std::snprintf(digits.data(), digits.size(), "%.17g", date->timeIntervalSince1970());
  return digits.data();
}

// All that the workload fills in.
std::string text(const LedgerEntry& entry) {
  const auto& payment = entry.payment;
  return "revision " + std::to_string(entry.revision) + ", state " +
         std::to_string(static_cast<std::int64_t>(entry.state)) +
         (entry.finished ? ", finished" : "") + ", owner " +
         std::to_string(entry.owner.value_or(0)) + ", " + payment.productIdentifier + " x" +
         std::to_string(payment.quantity) + " for " +
         payment.applicationUsername.value_or("nobody") + ", " +
         entry.transactionIdentifier.value_or("no identifier") + " at " +
         text(entry.transactionDate) + ", " +
         (entry.error ? entry.error->localizedDescription() : "no error") + ", original " +
         std::to_string(entry.original.value_or(0));
}

std::map<std::int64_t, std::string> textsOf(const LedgerEntries& entries) {
  std::map<std::int64_t, std::string> texts;
  for (const auto& each : entries) texts[each.identifier] += text(each);
  return texts;
}

std::string range(std::int64_t least, std::int64_t greatest) {
  return std::to_string(least) + " to " + std::to_string(greatest);
}

}  // namespace

LedgerHistory::LedgerHistory(const Ledger& ledger) : first_(ledger.revision()) {
  for (const auto& each : ledger.changedAfter(0)) learn(each);
  settings_ = {{0, ledger.settings()}};
}

void LedgerHistory::learn(const LedgerEntry& entry) {
  entries_[entry.identifier][entry.revision] = text(entry);
}

void LedgerHistory::entriesChanged(Span span, Ledger::Durability durability,
                                   const LedgerEntries& entries) {
  for (const auto& each : entries) learn(each);
  changes_.push_back({.span = span,
                      .revision = entries.front().revision,
                      .outlivesPowerCut = durability == Ledger::Durability::powerCut});
}

void LedgerHistory::settingsChanged(Span span, std::int64_t revision,
                                    StoreKit::LedgerSettings settings) {
  settings_[revision] = std::move(settings);
  changes_.push_back({.span = span, .revision = revision});
}

std::map<std::int64_t, std::string> LedgerHistory::entriesAt(std::int64_t revision) const {
  std::map<std::int64_t, std::string> there;
  for (const auto& [identifier, versions] : entries_) {
    const auto next = versions.upper_bound(revision);
    if (next != versions.begin()) there[identifier] = std::prev(next)->second;
  }
  return there;
}

std::int64_t LedgerHistory::leastRevision(std::size_t operation) const {
  auto least = first_;
  for (const auto& each : changes_) {
    if (each.outlivesPowerCut && each.span.ended <= operation) least = each.revision;
  }
  return least;
}

std::int64_t LedgerHistory::greatestRevision(std::size_t operation) const {
  auto greatest = first_;
  for (const auto& each : changes_) {
    if (each.span.begun < operation) greatest = each.revision;
  }
  return greatest;
}

std::string LedgerHistory::wrongEntries(const Ledger& ledger) const {
  const auto revision = ledger.revision();
  const auto expected = entriesAt(revision);
  const auto found = textsOf(ledger.changedAfter(0));
  if (found == expected) return "";
  for (const auto& [identifier, wanted] : expected) {
    const auto there = found.find(identifier);
    if (there != found.end() && there->second == wanted) continue;
    return "entry " + std::to_string(identifier) +
           " is not as it was: " + (there == found.end() ? "missing" : there->second) +
           "; it was: " + wanted;
  }
  return "there are entries that were not there in revision " + std::to_string(revision);
}

// A number that somebody was told must not come again.
std::string LedgerHistory::wrongNumber(Ledger& ledger, std::int64_t least) const {
  const auto given = entriesAt(least);
  const auto last = given.empty() ? 0 : given.rbegin()->first;
  LedgerEntries next(1);
  if (ledger.add(next, Ledger::Durability::powerCut)) return "nothing can be added";
  if (next[0].identifier > last) return "";
  return "number " + std::to_string(next[0].identifier) + " is given after " + std::to_string(last);
}

std::string LedgerHistory::complaint(Ledger& ledger, std::size_t operation) const {
  const auto revision = ledger.revision();
  const auto least = leastRevision(operation);
  const auto greatest = greatestRevision(operation);
  if (revision < least || revision > greatest) {
    return "it is in revision " + std::to_string(revision) + " of " + range(least, greatest);
  }
  if (auto wrong = wrongEntries(ledger); !wrong.empty()) return wrong;
  if (ledger.settings() != std::prev(settings_.upper_bound(revision))->second) {
    return "other settings are in force than in revision " + std::to_string(revision);
  }
  return wrongNumber(ledger, least);
}

}  // namespace tests
