// The examples of docs/codable.md, as they stand there.

#include <gtest/gtest.h>

#include <cstdio>

#include "TQStoreKitLib/TQStoreKitLib.hpp"
#include "tests/fakes/DefaultsInFolder.hpp"

namespace geometry {

struct Point {
  double x = 0;
  double y = 0;
};

template <class Coder>
void codableFields(Coder& coder, Point& point) {
  coder("x", point.x)("y", point.y);
}

}  // namespace geometry

namespace {

struct Player {
  std::string name;
  int level = 0;
  std::optional<std::string> guild;
  std::vector<std::string> badges;
};

template <class Coder>
void codableFields(Coder& coder, Player& player) {
  coder("name", player.name)("level", player.level)("guild", player.guild)("badges", player.badges);
}

struct Team {
  std::vector<Player> players;
};

template <class Coder>
void codableFields(Coder& coder, Team& team) {
  coder("players", team.players);
}

class Account {
 public:
  int balance() const { return balance_; }

 private:
  template <class Coder>
  friend void codableFields(Coder& coder, Account& account) {
    coder("balance", account.balance_);
  }
  int balance_ = 0;
};

enum class Rank { novice, knight };
constexpr auto codableCases(Rank) {
  return Foundation::codedAsText<Rank>({{Rank::novice, "novice"}, {Rank::knight, "knight"}});
}

enum class Door { shut = 0, open = 5 };
constexpr auto codableCases(Door) { return Foundation::codedAsNumber({Door::shut, Door::open}); }

struct Version {
  int major = 0;
  int minor = 0;
};

}  // namespace

template <>
struct Foundation::Codable<Version> {
  static void encode(Encoder& encoder, const Version& version) {
    encoder.text(std::to_string(version.major) + "." + std::to_string(version.minor));
  }
  static void decode(Decoder& decoder, Version& version) {
    std::string text;
    decoder.text(text);
    if (std::sscanf(text.c_str(), "%d.%d", &version.major, &version.minor) != 2) {
      decoder.fail("is no version");
    }
  }
};

namespace {

template <class T>
T decoded(std::string_view json) {
  return Foundation::JSONDecoder().decode<T>(json).value.value();
}

TEST(CodableExamples, APlayerAndFriendsAreKept) {
  const tests::DefaultsInFolder folder;
  const Player player = {"Anna", 5, std::nullopt, {"first steps"}};
  const std::vector<Player> friends = {player, player};
  auto& defaults = Foundation::UserDefaults::standardUserDefaults();
  setCodable(defaults, player, "player");
  std::optional<Player> last = codable<Player>(defaults, "player");

  setCodableList(defaults, friends, "friends");
  std::vector<Player> all = codableList<Player>(defaults, "friends");

  EXPECT_EQ(last->badges, player.badges);
  EXPECT_EQ(all.size(), 2U);
}

TEST(CodableExamples, PrivateMembersAndTypesOfOthersAreRead) {
  EXPECT_EQ(decoded<Account>(R"({"balance":7})").balance(), 7);
  EXPECT_EQ(decoded<geometry::Point>(R"({"x":1,"y":2})").y, 2);
}

TEST(CodableExamples, EnumsHaveTwoForms) {
  EXPECT_EQ(decoded<Rank>("\"knight\""), Rank::knight);
  EXPECT_EQ(decoded<Door>("5"), Door::open);
}

TEST(CodableExamples, AVersionHasAFormOfItsOwn) {
  EXPECT_EQ(decoded<Version>("\"2.10\"").minor, 10);
  EXPECT_EQ(Foundation::JSONDecoder().decode<Version>("\"two\"").error->localizedDescription(),
            "is no version");
}

TEST(CodableExamples, AnErrorNamesThePath) {
  const auto json =
      R"({"players":[{"name":"a","level":1,"badges":[]},{"name":"b","level":1,"badges":[]},
                        {"name":"c","level":"x","badges":[]}]})";
  EXPECT_EQ(Foundation::JSONDecoder().decode<Team>(json).error->localizedDescription(),
            "players[2].level: expected an integer, found text");
}

}  // namespace
