#pragma once

#include <array>
#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "platform/embedded/store/LedgerTransaction.hpp"

// What the application that is to be killed tells the test, one line each, fields behind tabs:
//
//     opened                              the ledger is open
//     delivered                           what earlier runs left has come back
//     told  NUMBER STATE PAYMENT OUTCOME  the queue has reported a transaction
//     may   NUMBER                        from now on it may be finished
//     removed NUMBER                      the queue has reported a removal
namespace crash {

/// The fields of a line.
inline std::vector<std::string> split(const std::string& line) {
  std::vector<std::string> fields;
  std::istringstream stream(line);
  for (std::string field; std::getline(stream, field, '\t');) fields.push_back(field);
  return fields;
}

inline std::string exact(double number) {
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%.17g", number);
  return text.data();
}

/// What was bought, by whom: never changes.
inline std::string paymentOf(const StoreKit::SKPaymentTransaction& transaction) {
  const auto payment = transaction.payment();
  return payment->productIdentifier() + " x" + std::to_string(payment->quantity()) + " for " +
         payment->applicationUsername().value_or("nobody");
}

/// Everything else that an observer sees; does not change once there is an outcome.
inline std::string outcomeOf(const StoreKit::SKPaymentTransaction& transaction) {
  const auto date = transaction.transactionDate();
  const auto error = transaction.error();
  const auto original = transaction.originalTransaction();
  return transaction.transactionIdentifier().value_or("no identifier") + " at " +
         (date ? exact(date->timeIntervalSince1970()) : "no date") + ", " +
         (error ? error->domain() + " " + std::to_string(error->code()) + " " +
                      error->localizedDescription()
                : "no error") +
         ", repeats " +
         (original ? original->transactionIdentifier().value_or("something") : "nothing");
}

inline std::int64_t numberOf(const StoreKit::SKPaymentTransaction& transaction) {
  return dynamic_cast<const StoreKit::LedgerTransaction&>(transaction).entry().identifier;
}

}  // namespace crash
