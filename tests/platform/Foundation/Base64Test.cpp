#include "platform/Foundation/Base64.hpp"

#include <gtest/gtest.h>

namespace Foundation {
namespace {

std::string encoded(std::string_view text) { return base64FromData(dataFromText(text)); }

std::optional<std::string> decoded(std::string_view text) {
  const auto data = dataFromBase64(text);
  return data ? std::optional<std::string>(textInData(*data)) : std::nullopt;
}

TEST(Base64, WritesTheVectorsOfTheStandard) {
  EXPECT_EQ(encoded(""), "");
  EXPECT_EQ(encoded("f"), "Zg==");
  EXPECT_EQ(encoded("fo"), "Zm8=");
  EXPECT_EQ(encoded("foo"), "Zm9v");
  EXPECT_EQ(encoded("foob"), "Zm9vYg==");
  EXPECT_EQ(encoded("fooba"), "Zm9vYmE=");
  EXPECT_EQ(encoded("foobar"), "Zm9vYmFy");
}

TEST(Base64, ReadsTheVectorsOfTheStandard) {
  EXPECT_EQ(decoded(""), "");
  EXPECT_EQ(decoded("Zg=="), "f");
  EXPECT_EQ(decoded("Zm8="), "fo");
  EXPECT_EQ(decoded("Zm9vYmFy"), "foobar");
}

TEST(Base64, UsesPlusAndSlash) {
  EXPECT_EQ(encoded("\xFB\xEF\xFF"), "++//");
  EXPECT_EQ(decoded("++//"), "\xFB\xEF\xFF");
}

TEST(Base64, KeepsEveryByte) {
  Data all;
  for (int i = 0; i < 256; ++i) all.push_back(static_cast<std::byte>(i));
  EXPECT_EQ(dataFromBase64(base64FromData(all)), all);
}

TEST(Base64, RefusesOtherCharacters) {
  EXPECT_EQ(decoded("Zm9v\n"), std::nullopt);
  EXPECT_EQ(decoded(" Zg="), std::nullopt);
  EXPECT_EQ(decoded("-_-_"), std::nullopt);
}

TEST(Base64, RefusesMissingAndMisplacedPadding) {
  EXPECT_EQ(decoded("Zg"), std::nullopt);
  EXPECT_EQ(decoded("Zg="), std::nullopt);
  EXPECT_EQ(decoded("Z==="), std::nullopt);
  EXPECT_EQ(decoded("Zg==Zg=="), std::nullopt);
}

TEST(Base64, RefusesLeftoverBits) {
  EXPECT_EQ(decoded("Zh=="), std::nullopt);
  EXPECT_EQ(decoded("Zm9="), std::nullopt);
}

}  // namespace
}  // namespace Foundation
