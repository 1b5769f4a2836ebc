#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "platform/embedded/sqlite/SqliteDatabase.hpp"
#include "tests/fakes/TemporaryFolder.hpp"
#include "tests/platform/embedded/store/ledger/LedgerSamples.hpp"

namespace tests {

/// A folder of its own with one ledger file in it.
class LedgerInFolder : public testing::Test {
 protected:
  // The file as it is, or as a program has left it that has ended.
  void makeLedger(int entries = 3) const {
    const auto ledger = openLedger(path);
    for (int i = 0; i < entries; ++i) addTo(*ledger, {entry("gems" + std::to_string(i))});
  }

  void executeOnFile(const char* statements) const {
    Foundation::detail::SqliteDatabase(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE)
        .execute(statements);
  }

  // Refused with the reason, and every byte where it was.
  void expectRefused(const std::string& reason) const {
    const auto before = bytesOf(path);
    const auto opening = SqliteLedger::open(path);
    EXPECT_FALSE(opening.ledger);
    EXPECT_THAT(opening.error, testing::StartsWith(path + ": " + reason));
    EXPECT_EQ(bytesOf(path), before);
    EXPECT_THAT(filesInFolder(), testing::ElementsAre("shop.ledger"));
  }

  std::vector<std::string> filesInFolder() const {
    std::vector<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(folder.path())) {
      names.push_back(file.path().filename().string());
    }
    return names;
  }

  TemporaryFolder folder;
  std::string path = folder.file("shop.ledger");
};

}  // namespace tests
