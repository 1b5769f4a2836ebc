#include "platform/Foundation/NotificationCenter.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace Foundation {
namespace {

using testing::ElementsAre;

NotificationCenter& center() { return NotificationCenter::defaultCenter(); }

NotificationName bell() { return NotificationName("bell"); }

void ring() { center().post(bell(), {}); }

class NotificationCenterTest : public testing::Test {
 protected:
  [[nodiscard]] NotificationObservation listen(const std::string& who) {
    return center().addObserver(bell(), [this, who](const Notification&) { heard.push_back(who); });
  }

  std::vector<std::string> heard;
};

TEST_F(NotificationCenterTest, IsOne) {
  EXPECT_EQ(&NotificationCenter::defaultCenter(), &NotificationCenter::defaultCenter());
}

TEST_F(NotificationCenterTest, CallsObserversInTheOrderOfTheirRegistration) {
  const auto first = listen("first");
  const auto second = listen("second");
  const auto third = listen("third");
  ring();
  EXPECT_THAT(heard, ElementsAre("first", "second", "third"));
}

TEST_F(NotificationCenterTest, PostReturnsAfterTheLastObserver) {
  const auto observation = listen("observer");
  ring();
  heard.push_back("poster");
  EXPECT_THAT(heard, ElementsAre("observer", "poster"));
}

TEST_F(NotificationCenterTest, OtherNamesAreNotHeard) {
  const auto observation = listen("observer");
  center().post(NotificationName("horn"), {});
  EXPECT_TRUE(heard.empty());
}

TEST_F(NotificationCenterTest, WithoutObserversNothingHappens) {
  ring();
  EXPECT_TRUE(heard.empty());
}

TEST_F(NotificationCenterTest, DroppedObservationEndsTheDelivery) {
  {
    const auto observation = listen("observer");
  }
  ring();
  EXPECT_TRUE(heard.empty());
}

TEST_F(NotificationCenterTest, UnkeptObservationIsNeverCalled) {
  (void)listen("observer");
  ring();
  EXPECT_TRUE(heard.empty());
}

TEST_F(NotificationCenterTest, CancelledObservationIsNotCalled) {
  auto observation = listen("observer");
  observation.cancel();
  observation.cancel();
  ring();
  EXPECT_TRUE(heard.empty());
}

TEST_F(NotificationCenterTest, MovedObservationGoesOn) {
  auto observation = listen("observer");
  const auto moved = std::move(observation);
  ring();
  EXPECT_THAT(heard, ElementsAre("observer"));
}

TEST_F(NotificationCenterTest, ObservationThatIsReplacedEnds) {
  auto observation = listen("old");
  observation = listen("new");
  ring();
  EXPECT_THAT(heard, ElementsAre("new"));
}

TEST_F(NotificationCenterTest, EmptyObservationMayBeCancelled) {
  NotificationObservation().cancel();
}

TEST_F(NotificationCenterTest, EmptyObserverIsNeverCalled) {
  const auto observation = center().addObserver(bell(), nullptr);
  const auto other = listen("other");
  ring();
  EXPECT_THAT(heard, ElementsAre("other"));
}

TEST_F(NotificationCenterTest, ObserverMayRemoveItself) {
  NotificationObservation own;
  own = center().addObserver(bell(), [&, text = std::string(100, 'x')](const Notification&) {
    own.cancel();
    heard.push_back(text.substr(0, 1));
  });
  const auto other = listen("other");
  ring();
  ring();
  EXPECT_THAT(heard, ElementsAre("x", "other", "other"));
}

TEST_F(NotificationCenterTest, ObserverMayRemoveALaterOneWhichIsNotCalledThen) {
  NotificationObservation later;
  const auto first = center().addObserver(bell(), [&](const Notification&) { later.cancel(); });
  later = listen("later");
  const auto last = listen("last");
  ring();
  EXPECT_THAT(heard, ElementsAre("last"));
}

TEST_F(NotificationCenterTest, ObserverMayRemoveAnEarlierOneAndNoneIsLeftOut) {
  auto earlier = listen("earlier");
  const auto remover = center().addObserver(bell(), [&](const Notification&) { earlier.cancel(); });
  const auto last = listen("last");
  ring();
  ring();
  EXPECT_THAT(heard, ElementsAre("earlier", "last", "last"));
}

TEST_F(NotificationCenterTest, ObserverAddedMeanwhileHearsTheNextOne) {
  std::vector<NotificationObservation> added;
  const auto adder = center().addObserver(bell(), [&](const Notification&) {
    if (added.empty()) added.push_back(listen("added"));
  });
  ring();
  EXPECT_TRUE(heard.empty());
  ring();
  EXPECT_THAT(heard, ElementsAre("added"));
}

TEST_F(NotificationCenterTest, ObserverMayPost) {
  const auto first = center().addObserver(bell(), [&](const Notification&) {
    heard.push_back("first");
    center().post(NotificationName("horn"), {});
  });
  const auto horn = center().addObserver(NotificationName("horn"),
                                         [&](const Notification&) { heard.push_back("horn"); });
  const auto last = listen("last");
  ring();
  EXPECT_THAT(heard, ElementsAre("first", "horn", "last"));
}

TEST_F(NotificationCenterTest, DestroyingAnObserverMayUseTheCenter) {
  struct RingsAtTheEnd {
    ~RingsAtTheEnd() { ring(); }
  };
  const auto other = listen("other");
  auto observation = center().addObserver(
      bell(), [owned = std::make_shared<RingsAtTheEnd>()](const Notification&) {});
  observation.cancel();
  EXPECT_THAT(heard, ElementsAre("other"));
}

}  // namespace
}  // namespace Foundation
