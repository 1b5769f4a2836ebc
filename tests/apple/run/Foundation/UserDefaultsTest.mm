#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "platform/Foundation/UserDefaults.hpp"

namespace Foundation {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AppleUserDefaults : public testing::TestWithParam<DefaultsObject> {
 protected:
  std::shared_ptr<UserDefaults> defaults = UserDefaults::withSuiteName("shop.test");

  ~AppleUserDefaults() override {
    for (const auto& key : defaults->keys()) defaults->remove(key);
  }
};

TEST_P(AppleUserDefaults, KeepEachKindOfValue) {
  defaults->set(GetParam(), "key");
  const auto stored = defaults->object("key");
  ASSERT_NE(stored, nullptr);
  EXPECT_TRUE(*stored == GetParam());
}

constexpr auto kGreatest = std::numeric_limits<std::int64_t>::max();

INSTANTIATE_TEST_SUITE_P(
    All, AppleUserDefaults,
    testing::Values(DefaultsObject::data(dataFromText(std::string_view("\0\xFF", 2))),
                    DefaultsObject::text("Ž\U0001F48E"), DefaultsObject::text(""),
                    DefaultsObject::integer(kGreatest), DefaultsObject::integer(-1),
                    DefaultsObject::floating(0.1), DefaultsObject::boolean(true),
                    DefaultsObject::boolean(false),
                    DefaultsObject::date(Date::sinceEpoch(1'700'000'000.25)),
                    DefaultsObject::list({DefaultsObject::integer(1), DefaultsObject::text("a")}),
                    DefaultsObject::map({{"a", DefaultsObject::boolean(true)},
                                         {"b", DefaultsObject::list({})}})));

using AppleUserDefaultsKeys = AppleUserDefaults;

TEST_F(AppleUserDefaultsKeys, AreListedInOrder) {
  defaults->set(DefaultsObject::integer(1), "b");
  defaults->set(DefaultsObject::integer(2), "a");
  EXPECT_THAT(defaults->keys(), ElementsAre("a", "b"));
}

TEST_F(AppleUserDefaultsKeys, RemovedAreGone) {
  defaults->set(DefaultsObject::integer(1), "a");
  defaults->remove("a");
  EXPECT_EQ(defaults->object("a"), nullptr);
  EXPECT_THAT(defaults->keys(), IsEmpty());
}

TEST_F(AppleUserDefaultsKeys, AreSharedByStoresOfOneName) {
  defaults->set(DefaultsObject::integer(1), "a");
  EXPECT_NE(UserDefaults::withSuiteName("shop.test")->object("a"), nullptr);
  EXPECT_EQ(UserDefaults::withSuiteName("another.test")->object("a"), nullptr);
}

TEST(AppleUserDefaultsNames, EmptyOneIsNone) {
  EXPECT_EQ(UserDefaults::withSuiteName(""), nullptr);
}

}  // namespace
}  // namespace Foundation
