#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

#include "tests/fakes/OpenShop.hpp"
#include "tests/fakes/StoreBooks.hpp"

namespace tests {

/// A shop with one observer, which was there from the start.
template <class Shop>
class ObservedShop : public testing::Test {
 protected:
  template <class... Arguments>
  explicit ObservedShop(Arguments&&... arguments) : shop(std::forward<Arguments>(arguments)...) {
    observer.observe();
    (void)turnUntilIdle();
  }

  static StoreKit::SKPaymentQueue& queue() { return OpenShop::queue(); }

  static void finish(const StoreKit::SKPaymentTransactionPtr& transaction) {
    queue().finishTransaction(transaction);
    (void)turnUntilIdle();
  }

  /// What the observer hears from now until all that is queued has run.
  const Journal& heard() {
    observer.forget();
    (void)turnUntilIdle();
    return observer.journal();
  }

  /// What it hears of a restore.
  const Journal& heardOfRestore() {
    queue().restoreCompletedTransactions(std::nullopt);
    return heard();
  }

  /// The application is not there for a while: nobody observes, and the next start is a new run.
  void goAway() {
    observer.stop();
    shop.session.relaunch();
    (void)turnUntilIdle();
  }
  /// What it hears when it is there again.
  const Journal& heardAtStart() {
    observer.observe();
    return heard();
  }

  Shop shop;
  JournalingObserver observer;
};

}  // namespace tests
