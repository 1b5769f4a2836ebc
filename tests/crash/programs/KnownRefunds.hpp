#pragma once

#include <map>
#include <string>

#include "tests/crash/LedgerModel.hpp"
#include "tests/crash/programs/KnownTransactions.hpp"

namespace crash {

/// Refunds and the news of them, which names products only: the last of each product counts.
class KnownRefunds {
 public:
  void grant(const std::string& product, Moment asked, Moment granted) {
    granted_[product] = {asked, granted};
  }
  void tell(const std::string& product, Moment moment) { told_[product] = moment; }

  /// Throws `Broken` when one that was granted before `moment` was told to nobody.
  void checkTold(Moment moment) const {
    for (const auto& [product, refund] : granted_) {
      if (refund.granted > moment) continue;
      const auto told = told_.find(product);
      if (told == told_.end() || told->second < refund.asked) {
        throw Broken("nobody was told of the refund of " + product);
      }
    }
  }

 private:
  struct Refund {
    Moment asked;
    Moment granted;
  };
  std::map<std::string, Refund> granted_;
  std::map<std::string, Moment> told_;
};

}  // namespace crash
