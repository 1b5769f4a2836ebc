#include "platform/embedded/store/Schedule.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace StoreKit {
namespace {

using Foundation::Date;
using testing::ElementsAre;
using testing::IsEmpty;

class ScheduleTest : public testing::Test {
 protected:
  void add(double moment, const std::string& name) {
    schedule.add(Date::sinceEpoch(moment), [this, name] { ran.push_back(name); });
  }

  Schedule schedule;
  std::vector<std::string> ran;
};

TEST_F(ScheduleTest, RunsWhatIsDueInTheOrderOfTheMoments) {
  add(3, "third");
  add(1, "first");
  add(2, "second");
  schedule.run(Date::sinceEpoch(2));
  EXPECT_THAT(ran, ElementsAre("first", "second"));
  EXPECT_EQ(schedule.next(), Date::sinceEpoch(3));
}

TEST_F(ScheduleTest, RunsWhatHasOneMomentInTheOrderInWhichItCame) {
  add(1, "a");
  add(1, "b");
  add(1, "c");
  schedule.run(Date::sinceEpoch(1));
  EXPECT_THAT(ran, ElementsAre("a", "b", "c"));
}

TEST_F(ScheduleTest, RunsEachStepOnce) {
  add(1, "a");
  schedule.run(Date::sinceEpoch(5));
  schedule.run(Date::sinceEpoch(5));
  EXPECT_THAT(ran, ElementsAre("a"));
  EXPECT_FALSE(schedule.next());
}

TEST_F(ScheduleTest, LeavesWhatAStepAddsForTheNextTime) {
  schedule.add(Date::sinceEpoch(1), [this] { add(1, "added"); });
  schedule.run(Date::sinceEpoch(1));
  EXPECT_THAT(ran, IsEmpty());
  schedule.run(Date::sinceEpoch(1));
  EXPECT_THAT(ran, ElementsAre("added"));
}

TEST_F(ScheduleTest, MayBeTakenFromByAStep) {
  schedule.add(Date::sinceEpoch(1), [this] { EXPECT_EQ(schedule.takeAll().size(), 1U); });
  add(2, "later");
  schedule.run(Date::sinceEpoch(1));
  EXPECT_FALSE(schedule.next());
}

TEST_F(ScheduleTest, GivesEverythingAwayInItsOrder) {
  add(2, "second");
  add(1, "first");
  for (const auto& step : schedule.takeAll()) step();
  EXPECT_THAT(ran, ElementsAre("first", "second"));
  EXPECT_FALSE(schedule.next());
}

}  // namespace
}  // namespace StoreKit
