#include <csignal>

#include "tests/tools/RunningTool.hpp"
#include "tests/tools/ToolOnLedger.hpp"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::TransactionLine;

class StoreCommands : public tests::ToolOnLedger {};

std::string renewed(const char* identifier) {
  return TransactionLine{identifier, "club", "purchased", false, "2000000001"};
}

TEST_F(StoreCommands, AStorefrontPurchaseWaitsForTheApplication) {
  const std::string asked = TransactionLine{"1", "gems", "purchasing", false, "", true};

  EXPECT_THAT(lines({"storefront-buy", "gems"}), ElementsAre(asked));

  EXPECT_THAT(lines({"transactions"}), ElementsAre(asked));
}

TEST_F(StoreCommands, AnApplicationThatRunsIsAskedAboutAStorefrontPurchase) {
  run({"buy", "levels", "--no-finish"});
  auto words = options();
  words.insert(words.end(), {"--json", "launch", "--watch"});
  RunningTool application(words);
  application.line();

  EXPECT_EQ(run({"storefront-buy", "gems"}).exitStatus, 0);

  EXPECT_EQ(application.line(),
            R"({"event":"storePurchase","productIdentifier":"gems","accepted":true})");
  EXPECT_EQ(tests::withoutDates(application.line()),
            std::string(TransactionLine{"2", "gems", "purchased", false, "", true}));
}

TEST_F(StoreCommands, WhatIsNotSoldCannotBeBoughtInTheStore) {
  expectRefused({"storefront-buy", "nope"}, "Nothing is sold as nope.");

  EXPECT_THAT(lines({"transactions", "--all"}), IsEmpty());
}

TEST_F(StoreCommands, RenewShowsTheNewPeriod) {
  run({"buy", "club"});

  EXPECT_THAT(lines({"renew", "club"}), ElementsAre(renewed("2")));
  EXPECT_THAT(lines({"renew", "club"}), ElementsAre(renewed("3")));

  EXPECT_THAT(lines({"launch"}), ElementsAre(renewed("2"), renewed("3")));
}

TEST_F(StoreCommands, ExpireShowsThePeriodThatEnds) {
  run({"buy", "club"});
  run({"renew", "club"});

  EXPECT_THAT(lines({"expire", "club"}), ElementsAre(renewed("2")));
}

TEST_F(StoreCommands, WhatHasExpiredIsNotRunning) {
  run({"buy", "club"});
  run({"expire", "club"});

  expectRefused({"expire", "club"}, "club is not running.");
  expectRefused({"renew", "club"}, "club is not running.");
}

TEST_F(StoreCommands, OnlySubscriptionsAreRenewedOrExpired) {
  run({"buy", "gems"});
  for (const char* command : {"renew", "expire"}) {
    expectRefused({command, "gems"}, "gems is no auto-renewable subscription.");
    expectRefused({command, "nope"}, "Nothing is sold as nope.");
    expectRefused({command, "club"}, "club is not running.");
  }
}

}  // namespace
