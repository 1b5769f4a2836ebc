#pragma once

#include <string>
#include <vector>

#include "platform/embedded/store/StoreSession.hpp"

namespace tests {

inline std::string stateName(StoreKit::SKPaymentTransactionState state) {
  static constexpr const char* kStates[] = {"purchasing", "purchased", "failed", "restored",
                                            "deferred"};
  return kStates[static_cast<std::size_t>(state)];
}

/// What the store's books say, a line each: "2 gems purchased finished".
inline std::vector<std::string> books(const StoreKit::StoreSession& session) {
  std::vector<std::string> lines;
  for (const auto& each : session.allTransactions()) {
    auto line = std::to_string(each.identifier) + " " + each.productIdentifier + " " +
                stateName(each.state);
    if (each.finished) line += " finished";
    if (each.cancelDate) line += " refunded";
    if (each.hasPurchaseIssue) line += " issue";
    lines.push_back(std::move(line));
  }
  return lines;
}

/// "StoreSessionErrorDomain 1"; "done" when nothing went wrong.
inline std::string outcome(const StoreKit::StoreSession::Failure& failure) {
  return failure ? failure->domain() + " " + std::to_string(failure->code()) : "done";
}

constexpr auto kDone = "done";
constexpr auto kInvalidAction = "StoreSessionErrorDomain 1";
constexpr auto kInvalidProduct = "StoreSessionErrorDomain 2";
constexpr auto kInvalidType = "StoreSessionErrorDomain 3";
constexpr auto kNoSubscription = "StoreSessionErrorDomain 4";
constexpr auto kNoTransaction = "StoreSessionErrorDomain 5";
constexpr auto kUnavailable = "StoreSessionErrorDomain 6";
constexpr auto kInvalidSetting = "StoreSessionErrorDomain 7";

}  // namespace tests
