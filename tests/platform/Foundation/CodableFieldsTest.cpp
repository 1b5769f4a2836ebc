#include <gtest/gtest.h>

#include <array>

#include "platform/Foundation/JSONDecoder.hpp"
#include "platform/Foundation/JSONEncoder.hpp"

namespace outside {

// A type of somebody else's, which cannot be changed.
struct Point {
  double x = 0;
  double y = 0;
};

template <class Coder>
void codableFields(Coder& coder, Point& point) {
  coder("x", point.x)("y", point.y);
}

}  // namespace outside

namespace Foundation {
namespace {

class Account {
 public:
  Account() = default;
  Account(std::string owner, int balance) : owner_(std::move(owner)), balance_(balance) {}
  friend bool operator==(const Account&, const Account&) = default;

 private:
  template <class Coder>
  friend void codableFields(Coder& coder, Account& account) {
    coder("owner", account.owner_)("balance", account.balance_);
  }

  std::string owner_;
  int balance_ = 0;
};

struct Profile {
  int a = 1;
  int b = 2;
  std::optional<int> c = 3;
  std::vector<int> list = {9};
  friend bool operator==(const Profile&, const Profile&) = default;
};
template <class Coder>
void codableFields(Coder& coder, Profile& profile) {
  coder("a", profile.a)("b", profile.b)("c", profile.c)("list", profile.list);
}

struct Named {
  std::string name;
};
template <class Coder>
void codableFields(Coder& coder, Named& named) {
  coder("name", named.name);
}
struct Ranked : Named {
  int rank = 0;
};
template <class Coder>
void codableFields(Coder& coder, Ranked& ranked) {
  codableFields(coder, static_cast<Named&>(ranked));
  coder("rank", ranked.rank);
}

struct Nothing {};
template <class Coder>
void codableFields(Coder&, Nothing&) {}

struct Wide {
  std::array<int, 100> members{};
};
template <class Coder>
void codableFields(Coder& coder, Wide& wide) {
  for (std::size_t i = 0; i < wide.members.size(); ++i) {
    coder("m" + std::to_string(i), wide.members.at(i));
  }
}

template <class T>
std::string json(const T& value) {
  return std::string(textInData(*JSONEncoder().encode(value).data));
}

template <class T>
std::optional<T> value(std::string_view json) {
  return JSONDecoder().decode<T>(json).value;
}

TEST(CodableFields, AreSaidOnceForBothWays) {
  const Account account("anna", 5);
  EXPECT_EQ(json(account), R"({"owner":"anna","balance":5})");
  EXPECT_EQ(value<Account>(json(account)), account);
}

TEST(CodableFields, CanBeSaidForTypesOfOthers) {
  EXPECT_EQ(json(std::vector<outside::Point>{{1, 2}}), R"([{"x":1,"y":2}])");
  EXPECT_EQ(value<outside::Point>(R"({"x":1,"y":2})")->y, 2);
}

TEST(CodableFields, ComeInAnyOrder) {
  const Profile expected = {.a = 10, .b = 20, .c = 30, .list = {40, 50}};
  EXPECT_EQ(value<Profile>(R"({"a":10,"b":20,"c":30,"list":[40,50]})"), expected);
  EXPECT_EQ(value<Profile>(R"({"list":[40,50],"c":30,"b":20,"a":10})"), expected);
  EXPECT_EQ(value<Profile>(R"({"b":20,"a":10,"list":[40,50],"c":30})"), expected);
}

TEST(CodableFields, ThatTheTypeDoesNotHaveArePassedOver) {
  const Profile expected = {.a = 10, .b = 20, .c = 30, .list = {}};
  EXPECT_EQ(value<Profile>(R"({"x":{"a":1},"a":10,"y":[1],"b":20,"c":30,"z":0,"list":[],"w":1})"),
            expected);
}

TEST(CodableFields, ThatAreOptionalMayBeNullOrLeftOut) {
  EXPECT_EQ(value<Profile>(R"({"a":1,"b":2,"c":null,"list":[]})")->c, std::nullopt);
  EXPECT_EQ(value<Profile>(R"({"a":1,"b":2,"list":[]})")->c, std::nullopt);
}

TEST(CodableFields, ThatAreNotOptionalMayNot) {
  EXPECT_FALSE(value<Profile>(R"({"a":1,"c":3,"list":[]})"));
  EXPECT_FALSE(value<Profile>(R"({"a":1,"b":null,"c":3,"list":[]})"));
  EXPECT_FALSE(value<Profile>("{}"));
}

TEST(CodableFields, TheLaterOneOfTwoCounts) {
  EXPECT_EQ(value<Profile>(R"({"a":1,"a":5,"b":2,"list":[1,2],"list":[3],"a":6})"),
            (Profile{.a = 6, .b = 2, .c = std::nullopt, .list = {3}}));
}

TEST(CodableFields, ReplaceWhatTheDefaultConstructorLeft) {
  EXPECT_EQ(value<Profile>(R"({"a":1,"b":2,"list":[]})")->list, std::vector<int>());
}

TEST(CodableFields, OfABaseAreSaidByTheType) {
  Ranked ranked;
  ranked.name = "anna";
  ranked.rank = 3;
  EXPECT_EQ(json(ranked), R"({"name":"anna","rank":3})");
  EXPECT_EQ(value<Ranked>(R"({"rank":3,"name":"anna"})")->name, "anna");
}

TEST(CodableFields, MayBeNone) {
  EXPECT_EQ(json(Nothing()), "{}");
  EXPECT_TRUE(value<Nothing>("{}"));
  EXPECT_TRUE(value<Nothing>(R"({"a":1,"b":[]})"));
  EXPECT_FALSE(value<Nothing>("[]"));
}

TEST(CodableFields, MayBeVeryMany) {
  Wide wide;
  for (std::size_t i = 0; i < wide.members.size(); ++i) wide.members.at(i) = static_cast<int>(i);
  const auto text = json(wide);
  EXPECT_EQ(value<Wide>(text)->members, wide.members);
  auto incomplete = text;
  incomplete.erase(text.find(",\"m90\":90"), 9);
  EXPECT_EQ(JSONDecoder().decode<Wide>(incomplete).error->localizedDescription(),
            "m90: is missing");
}

TEST(CodableFields, HaveKeysOfAnyText) {
  EXPECT_TRUE(value<Account>("{\"own\\u0065r\":\"a\",\"balance\":1}"));
}

}  // namespace
}  // namespace Foundation
