#include "platform/Foundation/NSError.hpp"

#include <gtest/gtest.h>

#include <utility>

namespace Foundation {
namespace {

TEST(NSError, KeepsDomainAndCode) {
  const NSError error("shop", -7);
  EXPECT_EQ(error.domain(), "shop");
  EXPECT_EQ(error.code(), -7);
  EXPECT_TRUE(error.userInfo().empty());
}

TEST(NSError, WithoutDescriptionIsWordedAsThePlatformDoes) {
  EXPECT_EQ(NSError("SKErrorDomain", 2).localizedDescription(),
            "The operation couldn’t be completed. (SKErrorDomain error 2.)");
}

TEST(NSError, DescriptionOfTheUserInfoWins) {
  const auto error = NSError::withDescription("shop", 1, "Closed.");
  EXPECT_EQ(error.localizedDescription(), "Closed.");
  EXPECT_EQ(error.domain(), "shop");
  EXPECT_EQ(error.code(), 1);
  EXPECT_EQ(error.userInfo().size(), 1U);
}

TEST(NSError, EmptyDescriptionIsADescription) {
  EXPECT_EQ(NSError::withDescription("shop", 1, "").localizedDescription(), "");
}

TEST(NSError, DescriptionThatIsNoTextIsNone) {
  const NSError error("shop", 1, {{std::string(NSLocalizedDescriptionKey), std::int64_t{5}}});
  EXPECT_EQ(error.localizedDescription(), "The operation couldn’t be completed. (shop error 1.)");
}

TEST(NSError, GivesTheErrorBeneath) {
  const NSError error("shop", 1, {{std::string(NSUnderlyingErrorKey), NSError("network", -1009)}});
  ASSERT_TRUE(error.underlyingError());
  EXPECT_EQ(error.underlyingError()->domain(), "network");
  EXPECT_EQ(error.underlyingError()->code(), -1009);
}

TEST(NSError, WithoutOneBeneathItIsAbsent) { EXPECT_FALSE(NSError("shop", 1).underlyingError()); }

TEST(NSError, TextBeneathIsNoError) {
  const NSError error("shop", 1, {{std::string(NSUnderlyingErrorKey), std::string("network")}});
  EXPECT_FALSE(error.underlyingError());
}

TEST(NSError, IsNeverEmptyAfterAMove) {
  NSError error("shop", 3);
  const NSError moved = std::move(error);
  EXPECT_EQ(error.code(), 3);  // NOLINT(bugprone-use-after-move): that it is usable is the promise
  EXPECT_EQ(moved.code(), 3);
}

TEST(NSError, GivesBackItsNativeObject) {
  struct Native : NativeObject {
    bool isEqual(const NativeObject& other) const override { return this == &other; }
    std::size_t hash() const override { return 1; }
  };
  const auto native = std::make_shared<const Native>();
  EXPECT_EQ(NSError("shop", 1, {}, native).native(), native);
  EXPECT_EQ(NSError("shop", 1).native(), nullptr);
}

}  // namespace
}  // namespace Foundation
