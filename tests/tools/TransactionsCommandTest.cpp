#include "platform/embedded/store/StoreSession.hpp"
#include "tests/tools/ToolOnLedger.hpp"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::TransactionLine;

class TransactionsCommand : public tests::ToolOnLedger {};

// Bought two weeks and a day ago: the introductory period is over, and the next is not paid.
void makeUnpaidRenewal(const std::string& shop, const std::string& ledger) {
  auto now = std::make_shared<double>(Foundation::Date::now().timeIntervalSince1970() - 15 * 86400);
  const auto opening = StoreKit::StoreSession::open(
      shop,
      {.ledger = ledger, .sources = {.now = [now] { return Foundation::Date::sinceEpoch(*now); }}});
  ASSERT_TRUE(opening.session);
  opening.session->setBillingRetryOnRenewalEnabled(true);
  ASSERT_FALSE(opening.session->buyProduct("club"));
  *now += 15 * 86400;
  opening.session->clockDidChange();
}

const std::string kGems =
    R"({"identifier":"1","transactionIdentifier":"2000000001","productIdentifier":"gems",)"
    R"("quantity":3,"state":"purchased","date":DATE,"originalTransactionIdentifier":null,)"
    R"("applicationUsername":"ann","error":null,"finished":false})";

const std::vector<std::string> kBuyGems = {"buy", "gems",   "--no-finish", "--quantity",
                                           "3",   "--user", "ann"};

TEST_F(TransactionsCommand, AnEmptyLedgerHasNone) {
  EXPECT_THAT(lines({"transactions"}), IsEmpty());
  EXPECT_THAT(lines({"transactions", "--all"}), IsEmpty());
}

TEST_F(TransactionsCommand, APersonIsToldThatThereAreNone) {
  EXPECT_EQ(runForPerson({"transactions"}).output, "");
  EXPECT_EQ(runForPerson({"transactions"}).errors, "tqstore: nothing is unfinished\n");
  EXPECT_EQ(runForPerson({"transactions", "--all"}).errors, "tqstore: the ledger is empty\n");
}

TEST_F(TransactionsCommand, ShowsThoseThatAreNotFinished) {
  run(kBuyGems);
  run({"buy", "levels"});

  EXPECT_THAT(lines({"transactions"}), ElementsAre(kGems));
}

TEST_F(TransactionsCommand, AllAreTheFinishedOnesToo) {
  run({"buy", "levels"});
  run({"buy", "gems", "--fail", "5"});

  EXPECT_THAT(
      lines({"transactions", "--all"}),
      ElementsAre(
          std::string(TransactionLine{"1", "levels", "purchased", true}),
          R"({"identifier":"2","transactionIdentifier":null,"productIdentifier":"gems",)"
          R"("quantity":1,"state":"failed","date":null,"originalTransactionIdentifier":null,)"
          R"("applicationUsername":"","error":{"domain":"SKErrorDomain","code":5,"message":)"
          R"~("The operation couldn’t be completed. (SKErrorDomain error 5.)"},"finished":true})~"));
}

TEST_F(TransactionsCommand, APersonSeesATable) {
  run(kBuyGems);

  const auto table = runForPerson({"transactions"}).lines();

  ASSERT_EQ(table.size(), 2U);
  EXPECT_EQ(table[0], "#  Product  Quantity  State      Transaction  Date                  User");
  EXPECT_THAT(table[1],
              testing::MatchesRegex("1  gems            3  purchased  2000000001   20.+T.+Z  ann"));
}

TEST_F(TransactionsCommand, APersonSeesWhatBecameOfThem) {
  run({"buy", "gems"});
  run({"refund", "1"});
  run({"settings", "interruptedPurchasesEnabled", "true"});
  run({"buy", "gems"});
  run({"storefront-buy", "gems"});

  const auto table = runForPerson({"transactions", "--all"}).lines();

  ASSERT_EQ(table.size(), 4U);
  EXPECT_THAT(table[1], testing::HasSubstr("  purchased, finished, refunded  "));
  EXPECT_THAT(table[2], testing::HasSubstr("  failed, interrupted, finished  "));
  EXPECT_THAT(table[3], testing::HasSubstr("  purchasing, not yet asked  "));
}

TEST_F(TransactionsCommand, APersonSeesUntilWhenASubscriptionRuns) {
  run({"buy", "gems"});
  run({"buy", "club"});

  const auto table = runForPerson({"transactions", "--all"}).lines();

  EXPECT_THAT(table.at(0), testing::EndsWith("  User  Subscription"));
  EXPECT_THAT(table.at(2), testing::MatchesRegex(".*  until 20..-..-..T..:..:..Z, renews"));
}

TEST_F(TransactionsCommand, OfASubscriptionOnlyThePeriodThatRunsHasAnEnd) {
  run({"buy", "club"});
  run({"renew", "club"});

  const auto table = runForPerson({"transactions", "--all"}).output;

  const auto end = table.find("until ");
  EXPECT_GT(end, table.find("\n2  club"));
  EXPECT_EQ(table.find("until ", end + 1), std::string::npos);
}

TEST_F(TransactionsCommand, APersonSeesThatARenewalIsUnpaid) {
  makeUnpaidRenewal(shop_.path(), ledger_);

  const auto table = runForPerson({"transactions", "--all"}).lines();

  ASSERT_EQ(table.size(), 2U);
  EXPECT_THAT(table[1], testing::HasSubstr("  purchased, renewal unpaid  "));
  EXPECT_THAT(table[1], testing::MatchesRegex(".*  ended 20..-..-..T..:..:..Z"));
}

TEST_F(TransactionsCommand, ALedgerThatIsRefusedIsAnErrorOfTheInput) {
  tests::write(ledger_, "Dear diary,\n");

  expectRefused({"transactions"}, ledger_ + ": is not a ledger", 2);

  EXPECT_EQ(tests::bytesOf(ledger_), "Dear diary,\n");
}

TEST_F(TransactionsCommand, EachConfigurationHasALedgerInTheStateFolder) {
  const std::vector<std::string> environment = {"XDG_STATE_HOME=" + folder_.path()};
  (void)runTool({"--config", shop_.path(), "buy", "gems", "--no-finish"}, environment);

  const auto again = runTool({"--config", shop_.path(), "--json", "transactions"}, environment);

  EXPECT_EQ(again.lines().size(), 1U);
  EXPECT_TRUE(std::filesystem::is_directory(folder_.file("tqstore")));
}

}  // namespace
