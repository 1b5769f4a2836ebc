#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

#include "platform/Foundation/NotificationCenter.hpp"
#include "platform/apple/Foundation/Bridging.hpp"
#include "tests/fakes/CapturedError.hpp"

/// An observer in the platform's own language.
@interface PlatformListener : NSObject {
 @public
  NSMutableArray* heard;
}
- (void)hear:(NSNotification*)notification;
@end

@implementation PlatformListener

- (instancetype)init {
  self = [super init];
  heard = [[NSMutableArray alloc] init];
  return self;
}

- (void)dealloc {
  [[NSNotificationCenter defaultCenter] removeObserver:self];
  [heard release];
  [super dealloc];
}

- (void)hear:(NSNotification*)notification {
  [heard addObject:notification];
}

@end

namespace Foundation {
namespace {

using testing::HasSubstr;

struct Event {
  std::string name;
  std::string description() const { return "event " + name; }
};

const NotificationName& shopEvent() {
  static auto& name = *new NotificationName("ShopEvent");
  return name;
}

NotificationCenter& center() { return NotificationCenter::defaultCenter(); }

class PlatformNotification : public testing::Test {
 protected:
  PlatformListener* listener = [[PlatformListener alloc] init];

  PlatformNotification() {
    [[NSNotificationCenter defaultCenter] addObserver:listener
                                             selector:@selector(hear:)
                                                 name:@"ShopEvent"
                                               object:nil];
  }
  ~PlatformNotification() override { [listener release]; }

  NSNotification* heard() const { return [listener->heard lastObject]; }
};

TEST_F(PlatformNotification, ReachesThePlatformsObserversUnderItsName) {
  center().post(shopEvent(), NotificationObject::box(Event{"begin"}));
  ASSERT_EQ([listener->heard count], 1U);
  EXPECT_TRUE([[heard() name] isEqual:@"ShopEvent"]);
  EXPECT_EQ([heard() userInfo], nil);
}

TEST_F(PlatformNotification, ObjectCanBeAskedForItsDescription) {
  center().post(shopEvent(), NotificationObject::box(Event{"begin"}));
  EXPECT_TRUE([[[heard() object] description] isEqual:@"event begin"]);
}

TEST_F(PlatformNotification, WithoutAnObjectHasNone) {
  center().post(shopEvent(), NotificationObject());
  ASSERT_EQ([listener->heard count], 1U);
  EXPECT_EQ([heard() object], nil);
}

TEST_F(PlatformNotification, ObjectLivesAsLongAsThePlatformKeepsIt) {
  center().post(shopEvent(), NotificationObject::box(Event{"kept"}));
  id const object = [[heard() object] retain];
  [listener->heard removeAllObjects];
  EXPECT_TRUE([[object description] isEqual:@"event kept"]);
  [object release];
}

TEST_F(PlatformNotification, DescriptionThatThrowsIsEmptyAndSaid) {
  struct Throwing {
    std::string description() const { throw std::runtime_error("speechless"); }
  };
  center().post(shopEvent(), NotificationObject::box(Throwing()));
  tests::CapturedError error;
  EXPECT_TRUE([[[heard() object] description] isEqual:@""]);
  EXPECT_THAT(error.text(), HasSubstr("speechless"));
}

TEST_F(PlatformNotification, UserInfoIsThePlatformsValues) {
  center().post(shopEvent(), {},
                Notification::UserInfo{{"text", std::string("gems")}, {"number", std::int64_t{3}}});
  EXPECT_TRUE([[[heard() userInfo] objectForKey:@"text"] isEqual:@"gems"]);
  EXPECT_EQ([[[heard() userInfo] objectForKey:@"number"] longLongValue], 3);
}

TEST(NotificationOfThePlatform, ReachesOurObservers) {
  std::vector<Notification> heard;
  const auto observation =
      center().addObserver(shopEvent(), [&](const Notification& each) { heard.push_back(each); });
  [[NSNotificationCenter defaultCenter] postNotificationName:@"ShopEvent"
                                                      object:@"an object of theirs"
                                                    userInfo:@{@"text" : @"gems"}];
  ASSERT_EQ(heard.size(), 1U);
  EXPECT_EQ(heard[0].name, shopEvent());
  EXPECT_TRUE(heard[0].object.isEmpty());
  ASSERT_TRUE(heard[0].userInfo);
  EXPECT_EQ(std::any_cast<std::string>(heard[0].userInfo->at("text")), "gems");
}

TEST(NotificationOfOurs, ValuesOfCppCrossThePlatformUnchanged) {
  std::vector<Notification> heard;
  const auto observation =
      center().addObserver(shopEvent(), [&](const Notification& each) { heard.push_back(each); });
  center().post(shopEvent(), NotificationObject::box(Event{"begin"}),
                Notification::UserInfo{{"event", Event{"inside"}}});
  ASSERT_EQ(heard.size(), 1U);
  EXPECT_EQ(heard[0].object.as<Event>()->name, "begin");
  EXPECT_EQ(std::any_cast<Event>(heard[0].userInfo->at("event")).name, "inside");
}

}  // namespace
}  // namespace Foundation
