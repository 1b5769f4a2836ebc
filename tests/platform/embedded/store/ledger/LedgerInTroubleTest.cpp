// Ledgers that cannot be written, or cannot be read.

#include <sys/resource.h>

#include "tests/fakes/CapturedError.hpp"
#include "tests/platform/embedded/store/ledger/ChildProcess.hpp"
#include "tests/platform/embedded/store/ledger/LedgerInFolder.hpp"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using LedgerInTrouble = LedgerInFolder;

// Permissions do not bind the superuser: it becomes somebody else for this.
int openAsNobody(const std::string& path) {
  return inChild([&] {
    if (::geteuid() == 0 && (::setegid(65534) != 0 || ::seteuid(65534) != 0)) return 2;
    const auto opening = SqliteLedger::open(path);
    return !opening.ledger && opening.error.starts_with(path + ": ") ? 0 : 1;
  });
}

TEST_F(LedgerInTrouble, InAFolderThatCannotBeWrittenIsRefused) {
  namespace fs = std::filesystem;
  makeLedger();
  const auto before = bytesOf(path);
  fs::permissions(path, fs::perms(0666));
  fs::permissions(folder.path(), fs::perms(0555));

  EXPECT_EQ(openAsNobody(path), 0);
  EXPECT_EQ(openAsNobody(folder.file("other.ledger")), 0);

  EXPECT_EQ(bytesOf(path), before);
  fs::permissions(folder.path(), fs::perms(0700));
  EXPECT_THAT(filesInFolder(), ElementsAre("shop.ledger"));
}

TEST_F(LedgerInTrouble, ThatCannotBeWrittenIsRefused) {
  namespace fs = std::filesystem;
  makeLedger();
  const auto before = bytesOf(path);
  fs::permissions(path, fs::perms(0444));
  fs::permissions(folder.path(), fs::perms(0777));

  EXPECT_EQ(openAsNobody(path), 0);

  EXPECT_EQ(bytesOf(path), before);
}

// No file of the child may grow beyond the limit, as on a disk without room.
void fillDisk(rlim_t limit) {
  std::signal(SIGXFSZ, SIG_IGN);
  const rlimit room{.rlim_cur = limit, .rlim_max = limit};
  ::setrlimit(RLIMIT_FSIZE, &room);
}

TEST_F(LedgerInTrouble, OnAFullDiskRefusesAChangeAndKeepsWhatItHas) {
  EXPECT_EQ(inChild([this] {
              const auto ledger = openLedger(path);
              addTo(*ledger, {entry("first")});
              fillDisk(200'000);
              auto large = entry("large");
              large.payment.requestData.emplace(1'000'000);
              LedgerEntries entries = {entry("small"), large};
              const auto error = ledger->add(entries, Ledger::Durability::powerCut);
              const bool clear = error && error->domain() == "SQLite" && error->code() != 0 &&
                                 error->localizedDescription().find(path) != std::string::npos;
              const bool kept = products(ledger->all()) == std::vector<std::string>{"first"};
              const bool untouched = entries[0].identifier == 0;
              const bool goesOn = !testing::Test::HasFailure();
              return clear && kept && untouched && goesOn ? 0 : 1;
            }),
            0);

  EXPECT_THAT(products(openLedger(path)->all()), ElementsAre("first"));
}

TEST_F(LedgerInTrouble, IsNotMadeOnAFullDisk) {
  EXPECT_EQ(inChild([this] {
              fillDisk(5000);
              const auto opening = SqliteLedger::open(path);
              return !opening.ledger && opening.error.starts_with(path + ": ") ? 0 : 1;
            }),
            0);

  EXPECT_THAT(openLedger(path)->all(), IsEmpty());
}

// Wherever the damage is: a clear refusal, or as many entries as can be read, never a crash.
TEST_F(LedgerInTrouble, DamagedInTheMiddleIsRefusedOrReadWithAWarning) {
  makeLedger(200);
  const auto whole = bytesOf(path);
  int refused = 0;
  for (std::size_t at = 100; at + 300 < whole.size(); at += 977) {
    auto damaged = whole;
    for (std::size_t i = 0; i < 300; ++i) damaged[at + i] = static_cast<char>(i * 73 + at);
    write(path, damaged);
    CapturedError errors;
    const auto opening = SqliteLedger::open(path);
    if (!opening.ledger) {
      ++refused;
      EXPECT_THAT(opening.error, HasSubstr(path)) << at;
      continue;
    }
    const auto count = opening.ledger->all().size();
    const auto warning = errors.text();
    EXPECT_EQ(count == 0, warning.find("The ledger cannot be read: ") != std::string::npos) << at;
  }
  EXPECT_LT(0, refused);
}

TEST_F(LedgerInTrouble, WithAnEntryThatCannotBeUnderstoodStaysUsable) {
  makeLedger(1);
  const auto ledger = openLedger(path);
  executeOnFile("UPDATE entry SET error = '{'");
  {
    CapturedError errors;
    EXPECT_FALSE(ledger->find(1));
    EXPECT_THAT(errors.text(), HasSubstr("The ledger cannot be read: "));
  }
  executeOnFile("UPDATE entry SET error = NULL");

  EXPECT_TRUE(ledger->find(1));
  EXPECT_THAT(products(ledger->changedAfter(0)), ElementsAre("gems0"));
}

}  // namespace
}  // namespace tests
