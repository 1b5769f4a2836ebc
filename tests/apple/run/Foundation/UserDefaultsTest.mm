#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "platform/Foundation/UserDefaults.hpp"
#include "tests/fakes/CapturedError.hpp"

namespace Foundation {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
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
  for (const auto* const key : {"d", "b", "e", "a", "c"}) {
    defaults->set(DefaultsObject::integer(1), key);
  }
  EXPECT_THAT(defaults->keys(), ElementsAre("a", "b", "c", "d", "e"));
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

TEST(AppleUserDefaultsNames, SomeAreNone) {
  EXPECT_EQ(UserDefaults::withSuiteName(""), nullptr);
  EXPECT_EQ(UserDefaults::withSuiteName("a/b"), nullptr);
  EXPECT_EQ(UserDefaults::withSuiteName(std::string_view("a\0b", 3)), nullptr);
  EXPECT_EQ(UserDefaults::withSuiteName("\xFF"), nullptr);
  EXPECT_EQ(UserDefaults::withSuiteName("NSGlobalDomain"), nullptr);
}

TEST_F(AppleUserDefaultsKeys, OfTextsThatAreNotUTF8AreRefusedAndSaid) {
  tests::CapturedError error;
  defaults->set(DefaultsObject::integer(1), "\xFF");
  EXPECT_THAT(error.text(), HasSubstr("the key is not UTF-8"));
  EXPECT_THAT(defaults->keys(), IsEmpty());
}

TEST_F(AppleUserDefaultsKeys, KeepTheirValueWhenTheNextCannotBeHeld) {
  defaults->set(DefaultsObject::integer(1), "a");
  tests::CapturedError error;
  defaults->set(DefaultsObject::list({DefaultsObject::text("\xFF")}), "a");
  EXPECT_THAT(error.text(), HasSubstr("a text in it is not UTF-8"));
  EXPECT_TRUE(*defaults->object("a") == DefaultsObject::integer(1));
}

TEST_F(AppleUserDefaultsKeys, HoldNothingThatLiesTooDeep) {
  auto deep = DefaultsObject::integer(1);
  for (int i = 0; i < 600; ++i) deep = DefaultsObject::list({deep});
  tests::CapturedError error;
  defaults->set(deep, "a");
  EXPECT_THAT(error.text(), HasSubstr("lies too deep"));
  EXPECT_EQ(defaults->object("a"), nullptr);
}

}  // namespace
}  // namespace Foundation
