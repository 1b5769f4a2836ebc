#include "platform/StoreKit/SKError.hpp"

#include <gtest/gtest.h>

namespace StoreKit {
namespace {

TEST(SKError, OfACodeIsAStoreErrorWithoutUserInfo) {
  const SKError error(SKError::Code::paymentCancelled);
  EXPECT_EQ(error.nsError().domain(), "SKErrorDomain");
  EXPECT_EQ(error.nsError().code(), 2);
  EXPECT_TRUE(error.nsError().userInfo().empty());
}

TEST(SKError, KeepsItsDescription) {
  const SKError error(SKError::Code::unknown, "Try again.");
  EXPECT_EQ(error.localizedDescription(), "Try again.");
  EXPECT_EQ(error.code(), SKError::Code::unknown);
}

TEST(SKError, ReadsAnyErrorAndLosesNothing) {
  const SKError error(Foundation::NSError::withDescription("other", -1009, "Offline."));
  EXPECT_EQ(static_cast<std::int64_t>(error.code()), -1009);
  EXPECT_EQ(error.nsError().domain(), "other");
  EXPECT_EQ(error.localizedDescription(), "Offline.");
}

}  // namespace
}  // namespace StoreKit
