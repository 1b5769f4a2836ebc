#include "tools/tqstore/ResetCommand.hpp"

#include <unistd.h>
#include <nlohmann/json.hpp>

#include <cstdio>
#include <iostream>
#include <memory>
#include <string>

#include "tools/tqstore/Json.hpp"
#include "tools/tqstore/StoreOpening.hpp"

namespace tqstore {

namespace {

struct Contents {
  std::size_t transactions = 0;
  std::size_t settings = 0;
};

Contents contents(const StoreKit::StoreSession& session) {
  return {.transactions = session.allTransactions().size(), .settings = ledger().settings().size()};
}

std::string text(const Contents& contents) {
  return counted(contents.transactions, "transaction") + " and " +
         counted(contents.settings, "setting");
}

// Where nobody sits at a terminal, nobody is asked.
bool isConfirmed(const Contents& doomed) {
  if (::isatty(STDIN_FILENO) == 0) return true;
  const auto question = "Remove " + text(doomed) + " from the ledger? [y/N] ";
  std::fputs(question.c_str(), stderr);
  std::string answer;
  std::getline(std::cin, answer);
  return answer == "y" || answer == "Y" || answer == "yes";
}

ExitStatus reset(StoreKit::StoreSession& session, const GlobalOptions& options, bool confirmed) {
  const auto doomed = contents(session);
  if (!confirmed && !isConfirmed(doomed)) {
    complain("nothing was removed");
    return kRefused;
  }
  if (const auto error = session.clearTransactions()) {
    complain(printable(error->localizedDescription()));
    return kRefused;
  }
  StoreKit::EmbeddedStore::current().downloads().sweep();
  session.resetToDefaultState();
  if (!ledger().settings().empty()) return kRefused;  // and the store has said why
  if (options.json) {
    writeJson({{"result", "success"},
               {"transactions", doomed.transactions},
               {"settings", doomed.settings}});
  } else {
    writeLine(text(doomed) + " removed");
  }
  return kDone;
}

Manual manual() {
  return {.group = "The ledger",
          .summary = "Empty the ledger",
          .description =
              "Removes all transactions, finished or not, and takes all settings back. Programs "
              "on the ledger see their transactions leave the queue. On a terminal it asks before.",
          .refusal = "The answer was no, or the ledger cannot be written to.",
          .examples = " tqstore --config shop.storekit reset --yes\n"};
}

}  // namespace

void addReset(CommandLine& line) {
  const auto confirmed = std::make_shared<bool>(false);
  auto command = line.add("reset", manual(), [confirmed, &options = line.options()](auto& session) {
    return reset(session, options, *confirmed);
  });
  command.addFlag("--yes", *confirmed, "Do not ask");
}

}  // namespace tqstore
