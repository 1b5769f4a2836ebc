#include <exception>

#include "tools/tqstore/BuyCommand.hpp"
#include "tools/tqstore/CheckCommand.hpp"
#include "tools/tqstore/CompletionCommand.hpp"
#include "tools/tqstore/Console.hpp"
#include "tools/tqstore/ControlCommands.hpp"
#include "tools/tqstore/DownloadCommand.hpp"
#include "tools/tqstore/DownloadFileCommand.hpp"
#include "tools/tqstore/EventsCommand.hpp"
#include "tools/tqstore/FetchCommand.hpp"
#include "tools/tqstore/FinishCommand.hpp"
#include "tools/tqstore/LaunchCommand.hpp"
#include "tools/tqstore/ProductsCommand.hpp"
#include "tools/tqstore/ResetCommand.hpp"
#include "tools/tqstore/RestoreCommand.hpp"
#include "tools/tqstore/SettingsCommand.hpp"
#include "tools/tqstore/StoreCommands.hpp"
#include "tools/tqstore/TransactionsCommand.hpp"
#include "tools/tqstore/commandline/CommandLine.hpp"

namespace {

tqstore::Manual manual() {
  return {.summary = "The embedded in-app store on the command line",
          .description =
              "An application of the library over the embedded store: it shows what a .storekit "
              "configuration sells, buys it, and does to the transactions what happens away from "
              "an application.\n"
              "\n"
              "Transactions are kept in a ledger, a file that outlives the program. Any number of "
              "programs may have it open: what one does, the others see at once. So an "
              "application under test can wait in one terminal for what tqstore does in another.\n"
              "\n"
              "A transaction is named by its number in the ledger, or by the identifier that the "
              "platform knows it by.\n"
              "\n"
              "tqstore COMMAND --help describes one command.",
          .refusal = "The store said no.",
          .examples =
              " tqstore check shop.storekit\n"
              " tqstore --config shop.storekit products\n"
              " tqstore --config shop.storekit buy gems.100 --quantity 3\n"
              " tqstore --config shop.storekit settings askToBuyEnabled true\n"};
}

// In the order in which --help lists them.
void addCommands(tqstore::CommandLine& line) {
  addProducts(line);
  addSettings(line);
  addCheck(line);
  addBuy(line);
  addRestore(line);
  addLaunch(line);
  addTransactions(line);
  addFinish(line);
  addDownload(line);
  addEvents(line);
  addReset(line);
  addControls(line);
  addStoreCommands(line);
  addFetch(line);
  addDownloadFile(line);
  addCompletion(line);
}

int run(int argc, char** argv) {
  tqstore::CommandLine line(manual());
  addCommands(line);
  if (tqstore::isAskedForWords(argc, argv)) return tqstore::writeWords(line, argc, argv);
  return line.run(argc, argv);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const int status = run(argc, argv);
    return status == tqstore::kDone && tqstore::outputIsLost() ? tqstore::kRefused : status;
  } catch (const std::exception& error) {
    tqstore::complain(error.what());
    return tqstore::kUsage;
  }
}
