#include <gtest/gtest.h>

#include "platform/Foundation/NotificationCenter.hpp"

namespace Foundation {
namespace {

struct Coin {
  int value;
  std::string description() const { return std::to_string(value) + " cents"; }
};

struct Note {
  std::string description() const { return "a note"; }
};

// What an observer of "till" is handed when this is posted.
Notification handed(const NotificationObject& object,
                    const std::optional<Notification::UserInfo>& userInfo = std::nullopt) {
  Notification copy{NotificationName(""), {}};
  auto& center = NotificationCenter::defaultCenter();
  const NotificationName till("till");
  const auto observation =
      center.addObserver(till, [&](const Notification& notification) { copy = notification; });
  center.post(till, object, userInfo);
  return copy;
}

TEST(Notification, NamesWhatItWasPostedUnder) {
  EXPECT_EQ(handed({}).name, NotificationName("till"));
  EXPECT_EQ(handed({}).name.rawValue(), "till");
}

TEST(Notification, CarriesTheObject) {
  const auto notification = handed(NotificationObject::box(Coin{5}));
  ASSERT_NE(notification.object.as<Coin>(), nullptr);
  EXPECT_EQ(notification.object.as<Coin>()->value, 5);
}

TEST(Notification, UserInfoIsAbsentUnlessGiven) { EXPECT_FALSE(handed({}).userInfo); }

TEST(Notification, CarriesTheUserInfo) {
  const auto notification = handed({}, Notification::UserInfo{{"count", 3}});
  ASSERT_TRUE(notification.userInfo);
  EXPECT_EQ(std::any_cast<int>(notification.userInfo->at("count")), 3);
}

TEST(Notification, EmptyUserInfoIsNotAbsent) {
  EXPECT_TRUE(handed({}, Notification::UserInfo{}).userInfo);
}

TEST(NotificationObject, IsEmptyByDefault) {
  const NotificationObject none;
  EXPECT_TRUE(none.isEmpty());
  EXPECT_EQ(none.as<Coin>(), nullptr);
  EXPECT_EQ(none.description(), "");
}

TEST(NotificationObject, OfAnotherTypeIsNull) {
  const auto object = NotificationObject::box(Coin{5});
  EXPECT_FALSE(object.isEmpty());
  EXPECT_EQ(object.as<Note>(), nullptr);
  EXPECT_EQ(object.as<int>(), nullptr);
}

TEST(NotificationObject, DescribesItsValue) {
  EXPECT_EQ(NotificationObject::box(Coin{5}).description(), "5 cents");
  EXPECT_EQ(NotificationObject::box(Note{}).description(), "a note");
}

TEST(NotificationObject, CopyRefersToTheSameValue) {
  const auto object = NotificationObject::box(Coin{5});
  const auto copy = object;  // NOLINT(performance-unnecessary-copy-initialization)
  EXPECT_EQ(copy.as<Coin>(), object.as<Coin>());
}

}  // namespace
}  // namespace Foundation
