#include "TQStoreKitLib/utilities/CodableDefaults.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <type_traits>

#include "platform/embedded/Foundation/DefaultsFolder.hpp"
#include "tests/fakes/DefaultsInFolder.hpp"

namespace {

using namespace Foundation;

struct Player {
  std::string name;
  int level = 0;
  friend bool operator==(const Player&, const Player&) = default;
};
template <class Coder>
void codableFields(Coder& coder, Player& player) {
  coder("name", player.name)("level", player.level);
}

// A type that is itself a list.
struct Hand {
  std::vector<int> cards;
  friend bool operator==(const Hand&, const Hand&) = default;
};

struct Refusing {
  bool throws = true;
};

}  // namespace

template <>
struct Foundation::Codable<Hand> {
  static void encode(Encoder& encoder, const Hand& hand) { encoder.value(hand.cards); }
  static void decode(Decoder& decoder, Hand& hand) { decoder.value(hand.cards); }
};

template <>
struct Foundation::Codable<Refusing> {
  static void encode(Encoder& encoder, const Refusing& refusing) {
    encoder.boolean(true);
    if (refusing.throws) throw std::runtime_error("refused");
  }
  static void decode(Decoder&, Refusing&) { throw 1; }
};

namespace {

class CodableDefaults : public testing::Test {
 protected:
  [[nodiscard]] std::string stored(std::string_view key) const {
    const auto object = defaults.object(key);
    if (!object) return "nothing";
    return object->asData() ? std::string(textInData(*object->asData())) : "no bytes";
  }
  void store(std::string_view json, std::string_view key) {
    defaults.set(DefaultsObject::data(dataFromText(json)), key);
  }

  static constexpr const char* kKey = "key";
  tests::DefaultsInFolder folder;
  UserDefaults& defaults = UserDefaults::standardUserDefaults();
};

const Player kAnna = {"Anna", 5};
const Player kBert = {"Bert", 7};

TEST_F(CodableDefaults, AKeyThatWasNeverWrittenIsAbsentOrEmpty) {
  EXPECT_EQ(codable<Player>(defaults, "never"), std::nullopt);
  EXPECT_EQ(codableList<Player>(defaults, "never"), std::vector<Player>());
}

TEST_F(CodableDefaults, AValueComesBackAsItWas) {
  setCodable(defaults, kAnna, kKey);
  EXPECT_EQ(codable<Player>(defaults, kKey), kAnna);
}

TEST_F(CodableDefaults, AValueIsStoredAsTheBytesOfItsJSONText) {
  setCodable(defaults, kAnna, kKey);
  EXPECT_EQ(stored(kKey), R"({"name":"Anna","level":5})");
}

TEST_F(CodableDefaults, AnOptionalValueIsStoredAsTheValue) {
  setCodable(defaults, std::optional<Player>(kAnna), kKey);
  EXPECT_EQ(stored(kKey), R"({"name":"Anna","level":5})");
}

TEST_F(CodableDefaults, AnAbsentValueIsStoredAsNullAndKeepsTheKey) {
  setCodable(defaults, kAnna, kKey);
  setCodable(defaults, std::optional<Player>(), kKey);
  EXPECT_EQ(stored(kKey), "null");
  EXPECT_EQ(codable<Player>(defaults, kKey), std::nullopt);
  EXPECT_EQ(codableList<Player>(defaults, kKey), std::vector<Player>());
}

TEST_F(CodableDefaults, AbsentNeedsNoType) {
  setCodable(defaults, std::nullopt, "single");
  setCodableList(defaults, std::nullopt, "list");
  EXPECT_EQ(stored("single"), "null");
  EXPECT_EQ(stored("list"), "null");
}

TEST_F(CodableDefaults, AListKeepsOrderAndDuplicates) {
  setCodableList(defaults, std::vector<Player>{kAnna, kBert, kAnna}, kKey);
  EXPECT_EQ(codableList<Player>(defaults, kKey), (std::vector<Player>{kAnna, kBert, kAnna}));
  EXPECT_EQ(stored(kKey).substr(0, 2), "[{");
}

TEST_F(CodableDefaults, AnAbsentListIsStoredAsNull) {
  setCodableList(defaults, std::optional<std::vector<int>>(), kKey);
  EXPECT_EQ(stored(kKey), "null");
  setCodableList(defaults, std::optional<std::vector<int>>({1, 2}), kKey);
  EXPECT_EQ(stored(kKey), "[1,2]");
}

TEST_F(CodableDefaults, AnEmptyListIsAnEmptyArray) {
  setCodableList(defaults, std::vector<Player>(), kKey);
  EXPECT_EQ(stored(kKey), "[]");
}

TEST_F(CodableDefaults, AnObjectIsNoList) {
  setCodable(defaults, kAnna, kKey);
  EXPECT_EQ(codableList<Player>(defaults, kKey), std::vector<Player>());
}

TEST_F(CodableDefaults, AListIsNoSingleValue) {
  setCodableList(defaults, std::vector<Player>{kAnna}, kKey);
  EXPECT_EQ(codable<Player>(defaults, kKey), std::nullopt);
}

TEST_F(CodableDefaults, ATypeThatIsAListIsASingleValue) {
  setCodable(defaults, Hand{{1, 2}}, kKey);
  EXPECT_EQ(stored(kKey), "[1,2]");
  EXPECT_EQ(codable<Hand>(defaults, kKey), (Hand{{1, 2}}));
  EXPECT_EQ(codable<std::vector<int>>(defaults, kKey), (std::vector<int>{1, 2}));
}

TEST_F(CodableDefaults, PlainValuesStandAlone) {
  setCodable(defaults, std::string("text"), "text");
  setCodable(defaults, 5, "number");
  EXPECT_EQ(stored("text"), "\"text\"");
  EXPECT_EQ(codable<std::string>(defaults, "text"), "text");
  EXPECT_EQ(codable<int>(defaults, "number"), 5);
}

TEST_F(CodableDefaults, AValueThatCannotBeEncodedLeavesTheOldOne) {
  setCodable(defaults, 1.5, kKey);
  setCodable(defaults, std::numeric_limits<double>::infinity(), kKey);
  EXPECT_EQ(codable<double>(defaults, kKey), 1.5);
  setCodableList(defaults, std::vector<std::string>{"\xFF"}, kKey);
  EXPECT_EQ(codable<double>(defaults, kKey), 1.5);
}

TEST_F(CodableDefaults, AConversionThatThrowsLeavesTheOldValue) {
  setCodable(defaults, Refusing{.throws = false}, kKey);
  setCodable(defaults, Refusing{.throws = true}, kKey);
  EXPECT_EQ(stored(kKey), "true");
}

TEST_F(CodableDefaults, AConversionThatThrowsReadsAsAbsent) {
  store("true", kKey);
  EXPECT_FALSE(codable<Refusing>(defaults, kKey));
  store("[true]", kKey);
  EXPECT_TRUE(codableList<Refusing>(defaults, kKey).empty());
  EXPECT_EQ(stored(kKey), "[true]");
}

TEST_F(CodableDefaults, WhatIsNotBytesIsAbsentAndStays) {
  defaults.set(DefaultsObject::text("{\"name\":\"Anna\",\"level\":5}"), kKey);
  EXPECT_EQ(codable<Player>(defaults, kKey), std::nullopt);
  EXPECT_EQ(codableList<Player>(defaults, kKey), std::vector<Player>());
  EXPECT_NE(defaults.object(kKey)->asText(), nullptr);
  defaults.set(DefaultsObject::integer(5), kKey);
  EXPECT_EQ(codable<int>(defaults, kKey), std::nullopt);
}

TEST_F(CodableDefaults, WhatNoLongerDecodesIsAbsentAndStays) {
  store(R"({"name":"Anna"})", kKey);
  EXPECT_EQ(codable<Player>(defaults, kKey), std::nullopt);
  EXPECT_EQ(stored(kKey), R"({"name":"Anna"})");
  store("not JSON", kKey);
  EXPECT_EQ(codable<Player>(defaults, kKey), std::nullopt);
  EXPECT_EQ(codableList<Player>(defaults, kKey), std::vector<Player>());
}

TEST_F(CodableDefaults, AListWithOneBadElementIsEmpty) {
  store(R"([{"name":"Anna","level":5},{"name":"Bert"}])", kKey);
  EXPECT_EQ(codableList<Player>(defaults, kKey), std::vector<Player>());
}

TEST_F(CodableDefaults, ReplacesWhateverWasThere) {
  defaults.set(DefaultsObject::boolean(true), kKey);
  setCodable(defaults, kAnna, kKey);
  EXPECT_EQ(codable<Player>(defaults, kKey), kAnna);
}

// What must not compile: a list form for a single value, key and value the wrong way round.
template <class T, class Key>
concept TakenAsList =
    requires(UserDefaults& store, T value, Key key) { setCodableList(store, value, key); };
template <class T, class Key>
concept TakenAsSingle =
    requires(UserDefaults& store, T value, Key key) { setCodable(store, value, key); };
static_assert(TakenAsList<std::vector<Player>, const char*>);
static_assert(!TakenAsList<Player, const char*>);
static_assert(TakenAsSingle<Player, const char*>);
static_assert(!TakenAsSingle<const char*, Player>);
static_assert(!TakenAsSingle<const char*, const char*>);

}  // namespace
