// One of several applications on the ledger of its first argument. Its name, the second, stands
// before every line that it says; the third is its seed, or "quiet" for one that carries on what
// others left, and ends.

#include <unistd.h>

#include <cstdlib>
#include <iostream>

#include "platform/Foundation/Print.hpp"
#include "platform/embedded/store/ledger/SqliteLedger.hpp"
#include "tests/crash/programs/Shop.hpp"
#include "tests/crash/programs/Shopper.hpp"

namespace {

constexpr unsigned kLongestLife = 60;  // seconds, if nobody kills it

StoreKit::StoreSources fastSources() {
  StoreKit::StoreSources sources;
  sources.now = [] {
    const double now = Foundation::Date::now().timeIntervalSince1970();
    return Foundation::Date::sinceEpoch(now * crash::kClockSpeed);
  };
  return sources;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  ::alarm(kLongestLife);
  auto opening = StoreKit::SqliteLedger::open(argv[1]);
  if (!opening.ledger) {
    crash::Teller{argv[2]}("refused\t" + opening.error);
    return 1;
  }
  StoreKit::StoreSession session(crash::fastShop(), fastSources(), std::move(opening.ledger));
  const bool quiet = std::string(argv[3]) == "quiet";
  crash::Shopper shopper(session, argv[2], std::strtoull(argv[3], nullptr, 10));
  if (!quiet) shopper.shop();
  shopper.carryOn();
  std::_Exit(0);
}
