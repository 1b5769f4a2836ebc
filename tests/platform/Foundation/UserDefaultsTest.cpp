#include "platform/Foundation/UserDefaults.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/embedded/Foundation/DefaultsFolder.hpp"
#include "platform/embedded/Foundation/DefaultsStore.hpp"
#include "tests/fakes/CapturedError.hpp"
#include "tests/fakes/DefaultsInFolder.hpp"

namespace Foundation {
namespace {

using namespace std::string_literals;
using Object = DefaultsObject;

class UserDefaultsTest : public testing::Test {
 protected:
  // What the next start of the program finds.
  [[nodiscard]] DefaultsObjectPtr stored(std::string_view key) const {
    return DefaultsStore(folder.file(programName() + ".defaults")).object(key);
  }

  tests::DefaultsInFolder folder;
  UserDefaults& defaults = UserDefaults::standardUserDefaults();
};

TEST_F(UserDefaultsTest, HasOneStandardStore) {
  EXPECT_EQ(&UserDefaults::standardUserDefaults(), &defaults);
}

TEST_F(UserDefaultsTest, AKeyThatWasNeverSetHasNoValue) {
  EXPECT_EQ(defaults.object("never"), nullptr);
}

TEST_F(UserDefaultsTest, AValueIsThereAtOnce) {
  defaults.set(Object::integer(5), "key");
  EXPECT_EQ(*defaults.object("key"), Object::integer(5));
}

TEST_F(UserDefaultsTest, ANewValueReplacesOneOfAnotherKind) {
  defaults.set(Object::integer(5), "key");
  defaults.set(Object::text("five"), "key");
  EXPECT_EQ(*defaults.object("key"), Object::text("five"));
}

TEST_F(UserDefaultsTest, AValueThatIsHeldStaysAsItIs) {
  defaults.set(Object::integer(5), "key");
  const auto held = defaults.object("key");
  defaults.set(Object::integer(6), "key");
  EXPECT_EQ(*held, Object::integer(5));
}

TEST_F(UserDefaultsTest, RemovingTakesTheValueAway) {
  defaults.set(Object::integer(5), "key");
  defaults.remove("key");
  defaults.remove("never");
  EXPECT_EQ(defaults.object("key"), nullptr);
  EXPECT_TRUE(defaults.synchronize());
  EXPECT_EQ(stored("key"), nullptr);
}

TEST_F(UserDefaultsTest, ListsItsKeysInOrder) {
  for (const auto* const key : {"b", "", "a", "é", "a b"}) defaults.set(Object::boolean(true), key);
  defaults.remove("b");
  EXPECT_EQ(defaults.keys(), (std::vector<std::string>{"", "a", "a b", "é"}));
}

TEST_F(UserDefaultsTest, KeepsEveryKindOfValue) {
  const Object::Map values = {
      {"data", Object::data(dataFromText("\0\xFF"s))},
      {"no data", Object::data({})},
      {"text", Object::text("a\0é"s)},
      {"no text", Object::text("")},
      {"lowest", Object::integer(INT64_MIN)},
      {"highest", Object::integer(INT64_MAX)},
      {"floating", Object::floating(0.1)},
      {"whole", Object::floating(3)},
      {"infinite", Object::floating(std::numeric_limits<double>::infinity())},
      {"true", Object::boolean(true)},
      {"false", Object::boolean(false)},
      {"date", Object::date(Date::sinceEpoch(1500000000.123))},
  };
  for (const auto& [key, value] : values) defaults.set(value, key);
  defaults.set(Object::map(values), "map");
  defaults.set(Object::list({Object::list({}), Object::map(values), Object::map({})}), "list");
  ASSERT_TRUE(defaults.synchronize());
  for (const auto& [key, value] : values) EXPECT_EQ(*stored(key), value) << key;
  EXPECT_EQ(*stored("map"), Object::map(values));
  EXPECT_EQ(stored("list")->asList()->at(1), Object::map(values));
}

TEST_F(UserDefaultsTest, KeepsWhatIsNotANumber) {
  const auto nan = Object::floating(std::numeric_limits<double>::quiet_NaN());
  defaults.set(nan, "nan");
  defaults.set(Object::list({nan}), "list");
  ASSERT_TRUE(defaults.synchronize());
  EXPECT_TRUE(std::isnan(*stored("nan")->asFloating()));
  EXPECT_TRUE(std::isnan(*stored("list")->asList()->front().asFloating()));
}

TEST_F(UserDefaultsTest, KeepsKeysOfAnyText) {
  const auto key = "a\0'; DROP TABLE defaults"s;
  defaults.set(Object::integer(1), key);
  ASSERT_TRUE(defaults.synchronize());
  EXPECT_EQ(*stored(key), Object::integer(1));
}

TEST_F(UserDefaultsTest, KeepsLargeValues) {
  const auto large = Object::data(Data(5'000'000, std::byte{7}));
  defaults.set(large, "large");
  ASSERT_TRUE(defaults.synchronize());
  EXPECT_EQ(*stored("large"), large);
}

TEST_F(UserDefaultsTest, RefusesTextsThatAreNotUTF8) {
  defaults.set(Object::integer(1), "key");
  tests::CapturedError error;
  defaults.set(Object::text("\xFF"), "key");
  defaults.set(Object::list({Object::text("\xFF")}), "key");
  defaults.set(Object::integer(2), "\xFF");
  EXPECT_EQ(error.text(),
            "The user defaults can't hold a value: the text is not UTF-8\n"
            "The user defaults can't hold a value: list[0].text: the text is not UTF-8\n"
            "The user defaults can't hold a value: the key is not UTF-8\n");
  EXPECT_EQ(*defaults.object("key"), Object::integer(1));
  EXPECT_EQ(defaults.keys(), std::vector<std::string>{"key"});
}

TEST_F(UserDefaultsTest, RefusesValuesThatAreTooDeep) {
  auto deep = Object::integer(1);
  for (int i = 0; i < 300; ++i) deep = Object::list({deep});
  tests::CapturedError error;
  defaults.set(deep, "key");
  EXPECT_NE(error.text().find("lies too deep"), std::string::npos);
  EXPECT_EQ(defaults.object("key"), nullptr);
}

TEST_F(UserDefaultsTest, SuitesHaveAContentOfTheirOwn) {
  const auto suite = UserDefaults::withSuiteName("group.example");
  suite->set(Object::integer(1), "key");
  EXPECT_EQ(defaults.object("key"), nullptr);
  EXPECT_EQ(UserDefaults::withSuiteName("group.other")->object("key"), nullptr);
}

TEST_F(UserDefaultsTest, SuitesOfOneNameHaveOneContent) {
  UserDefaults::withSuiteName("group.example")->set(Object::integer(1), "key");
  EXPECT_EQ(*UserDefaults::withSuiteName("group.example")->object("key"), Object::integer(1));
}

TEST_F(UserDefaultsTest, SuitesHaveNamesOfAnyText) {
  const auto name = "../a b/é\0:"s;
  const auto suite = UserDefaults::withSuiteName(name);
  suite->set(Object::integer(1), "key");
  EXPECT_TRUE(suite->synchronize());
  EXPECT_TRUE(std::filesystem::exists(folder.file("%2E.%2Fa%20b%2F%C3%A9%00%3A.defaults")));
}

TEST_F(UserDefaultsTest, SomeNamesCannotBeASuites) {
  EXPECT_EQ(UserDefaults::withSuiteName(""), nullptr);
  EXPECT_EQ(UserDefaults::withSuiteName(programName()), nullptr);
  EXPECT_EQ(UserDefaults::withSuiteName(std::string(500, 'x')), nullptr);
}

}  // namespace
}  // namespace Foundation
