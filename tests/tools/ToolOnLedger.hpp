#pragma once

#include <gmock/gmock.h>

#include <regex>
#include <string>
#include <vector>

#include "tests/fakes/TemporaryFolder.hpp"
#include "tests/tools/ToolRun.hpp"

namespace tests {

/// A line without its dates: the one thing that no test knows beforehand.
inline std::string withoutDates(const std::string& line) {
  static const std::regex date(R"("\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ")");
  return std::regex_replace(line, date, "DATE");
}

/// Runs the tool on one shop and one ledger; every run is a new process.
class ToolOnLedger : public testing::Test {
 protected:
  /// What stands in front of a command.
  [[nodiscard]] std::vector<std::string> options() const {
    return {"--config", shop_.path(), "--ledger", ledger_};
  }

  ToolRun runForPerson(const std::vector<std::string>& arguments) const {
    auto words = options();
    words.insert(words.end(), arguments.begin(), arguments.end());
    return runTool(words);
  }
  ToolRun run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "--json");
    return runForPerson(arguments);
  }

  /// The JSON of a run that goes well, without dates.
  std::vector<std::string> lines(const std::vector<std::string>& arguments) const {
    const auto answer = run(arguments);
    EXPECT_EQ(answer.exitStatus, 0) << answer.errors;
    auto lines = answer.lines();
    for (auto& line : lines) line = withoutDates(line);
    return lines;
  }

  /// Expects that nothing is done or written, and that standard error says this.
  void expectRefused(const std::vector<std::string>& arguments, const std::string& why,
                     int exitStatus = 1) const {
    const auto answer = run(arguments);
    EXPECT_EQ(answer.exitStatus, exitStatus) << testing::PrintToString(arguments);
    EXPECT_EQ(answer.output, "") << testing::PrintToString(arguments);
    EXPECT_EQ(answer.errors, "tqstore: " + why + "\n");
  }

  /// How the ledger has a transaction now.
  std::string transaction(const std::string& identifier) const {
    for (const auto& line : lines({"transactions", "--all"})) {
      if (line.rfind(R"({"identifier":")" + identifier + '"', 0) == 0) return line;
    }
    return "(none)";
  }

  TemporaryFolder folder_;
  std::string ledger_ = folder_.file("shop.ledger");
  TemporaryFile shop_{shopConfiguration()};
};

/// A transaction with --json, of one item, without a user name and without an error.
struct TransactionLine {
  std::string identifier{};
  std::string product{};
  std::string state{};
  bool finished = false;
  std::string original{};
  bool begunInStore = false;  ///< no application has said for which user

  operator std::string() const {  // NOLINT(google-explicit-constructor): reads like the text
    const bool dated = state == "purchased" || state == "restored";
    const auto number = std::stoll(identifier);
    return R"({"identifier":")" + identifier + R"(","transactionIdentifier":)" +
           (dated ? "\"" + std::to_string(2'000'000'000 + number) + "\"" : "null") +
           R"(,"productIdentifier":")" + product + R"(","quantity":1,"state":")" + state +
           R"(","date":)" + (dated ? "DATE" : "null") + R"(,"originalTransactionIdentifier":)" +
           (original.empty() ? "null" : "\"" + original + "\"") + R"(,"applicationUsername":)" +
           (begunInStore ? "null" : R"("")") + R"(,"error":null,"finished":)" +
           (finished ? "true" : "false") + "}";
  }
};

}  // namespace tests
