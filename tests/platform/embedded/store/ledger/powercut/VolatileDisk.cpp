#include "tests/platform/embedded/store/ledger/powercut/VolatileDisk.hpp"

#include <filesystem>
#include <utility>

#include "tests/fakes/TemporaryFolder.hpp"

namespace tests {

namespace {

using Operation = WatchedDisk::Operation;
using File = WatchedDisk::File;

Content readFile(const std::string& path) {
  if (!std::filesystem::exists(path)) return std::nullopt;
  return bytesOf(path);
}

// Some systems wait for the disk when a file is emptied and written again, and not for a new one.
void writeFile(const std::string& path, const Content& content) {
  std::filesystem::remove(path);
  if (content) tests::write(path, *content);
}

}  // namespace

LedgerFiles LedgerFiles::read(const std::string& path) {
  return {.database = readFile(path),
          .journal = readFile(path + "-journal"),
          .log = readFile(path + "-wal")};
}

void LedgerFiles::write(const std::string& path) const {
  writeFile(path, database);
  writeFile(path + "-journal", journal);
  writeFile(path + "-wal", log);
  writeFile(path + "-shm", std::nullopt);
}

VolatileDisk::VolatileDisk(LedgerFiles files)
    : database_(std::move(files.database)),
      journal_(std::move(files.journal)),
      log_(std::move(files.log)) {}

VolatileFile& VolatileDisk::at(File file) {
  if (file == File::journal) return journal_;
  return file == File::log ? log_ : database_;
}

void VolatileDisk::syncFolder() {
  for (auto* file : {&database_, &journal_, &log_}) file->syncName();
}

void VolatileDisk::apply(const DiskOperation& operation) {
  auto& file = at(operation.file);
  switch (operation.operation) {
    case Operation::open:
      file.create();
      break;
    case Operation::write:
      file.write(operation.at, operation.bytes);
      break;
    case Operation::truncate:
      file.truncate(operation.at);
      break;
    case Operation::remove:
      file.remove();
      break;
    case Operation::sync:
      file.sync();
      break;
  }
  if (operation.syncsFolder) syncFolder();
}

LedgerFiles VolatileDisk::afterPowerCut(Dice& dice) const {
  return {.database = database_.afterPowerCut(dice),
          .journal = journal_.afterPowerCut(dice),
          .log = log_.afterPowerCut(dice)};
}

}  // namespace tests
