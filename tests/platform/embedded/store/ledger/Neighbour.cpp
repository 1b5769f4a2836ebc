// Another program on the ledger of its first argument. It answers each line of its standard input
// with a line: `add PRODUCT`, `finish NUMBER`, `begin PRODUCT` (a purchase that it never carries
// on), `states`, `hold` (a write lock).

#include <iostream>
#include <optional>
#include <sstream>

#include "platform/embedded/sqlite/SqliteDatabase.hpp"
#include "platform/embedded/store/ledger/SqliteLedger.hpp"

namespace {

using namespace StoreKit;
using State = SKPaymentTransactionState;

class Neighbour {
 public:
  Neighbour(std::string path, std::unique_ptr<SqliteLedger> ledger)
      : path_(std::move(path)), ledger_(std::move(ledger)) {}

  std::string answer(const std::string& order, const std::string& subject) {
    if (order == "add") return add(subject, State::purchased);
    if (order == "begin") return add(subject, State::purchasing);
    if (order == "finish") return finish(std::stoll(subject));
    if (order == "hold") return hold();
    std::string states;
    for (const auto& entry : ledger_->all()) {
      states += std::to_string(static_cast<int>(entry.state)) + (entry.finished ? "f" : "");
    }
    return states;
  }

 private:
  std::string add(const std::string& product, State state) {
    LedgerEntry entry;
    entry.state = state;
    entry.payment.productIdentifier = product;
    if (state == State::purchasing) entry.owner = ledger_->owner();
    LedgerEntries entries = {entry};
    const auto error = ledger_->add(entries, Ledger::Durability::killedProcess);
    return error ? error->localizedDescription() : std::to_string(entries[0].identifier);
  }

  std::string finish(std::int64_t number) {
    LedgerEntries entries = {*ledger_->find(number)};
    entries[0].finished = true;
    const auto error = ledger_->update(entries, Ledger::Durability::killedProcess);
    return error ? error->localizedDescription() : "done";
  }

  std::string hold() {
    database_.emplace(path_, SQLITE_OPEN_READWRITE);
    database_->execute("BEGIN IMMEDIATE; UPDATE entry SET product = 'half done'");
    return "holding";
  }

  std::string path_;
  std::unique_ptr<SqliteLedger> ledger_;
  std::optional<Foundation::detail::SqliteDatabase> database_;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  auto opening = SqliteLedger::open(argv[1]);
  if (!opening.ledger) {
    std::cerr << opening.error << '\n';
    return 1;
  }
  Neighbour neighbour(argv[1], std::move(opening.ledger));
  for (std::string line; std::getline(std::cin, line);) {
    std::istringstream words(line);
    std::string order;
    std::string subject;
    words >> order >> subject;
    std::cout << neighbour.answer(order, subject) << std::endl;
  }
}
