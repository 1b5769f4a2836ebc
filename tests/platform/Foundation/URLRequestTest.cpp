#include "platform/Foundation/URLRequest.hpp"

#include <gtest/gtest.h>

namespace Foundation {
namespace {

URLRequest request() { return URLRequest(*URL::withString("http://example.com/")); }

TEST(URLRequest, IsAGetWithThePlatformsDefaults) {
  EXPECT_EQ(request().httpMethod(), "GET");
  EXPECT_EQ(request().cachePolicy(), URLRequest::CachePolicy::useProtocolCachePolicy);
  EXPECT_EQ(request().timeoutInterval().count(), 60.0);
  EXPECT_EQ(request().httpBody(), std::nullopt);
  EXPECT_TRUE(request().allHTTPHeaderFields().empty());
}

TEST(URLRequest, FindsAFieldInAnyLetterCase) {
  auto made = request();
  made.setValue("a", "Content-Type");
  EXPECT_EQ(made.value("content-TYPE"), "a");
  EXPECT_EQ(made.value("Content-Typ"), std::nullopt);
}

TEST(URLRequest, ReplacesAFieldOfTheSameNameInAnotherLetterCase) {
  auto made = request();
  made.setValue("a", "Content-Type");
  made.setValue("b", "content-type");
  ASSERT_EQ(made.allHTTPHeaderFields().size(), 1U);
  EXPECT_EQ(made.allHTTPHeaderFields().begin()->first, "content-type");
  EXPECT_EQ(made.allHTTPHeaderFields().begin()->second, "b");
}

TEST(URLRequest, AnAbsentValueRemovesTheField) {
  auto made = request();
  made.setValue("a", "Accept");
  made.setValue(std::nullopt, "ACCEPT");
  EXPECT_TRUE(made.allHTTPHeaderFields().empty());
}

TEST(URLRequest, TakesTheNameOfTheFieldThatItReplaces) {
  auto made = request();
  made.setValue("a", "X-A-Name-That-Is-Too-Long-To-Be-Kept-Within");
  made.setValue("b", made.allHTTPHeaderFields().begin()->first);
  EXPECT_EQ(made.value("X-A-Name-That-Is-Too-Long-To-Be-Kept-Within"), "b");
}

TEST(URLRequest, FoldsNothingButTheLettersOfASCII) {
  auto made = request();
  made.setValue("a", "[");
  EXPECT_EQ(made.value("{"), std::nullopt);
  made.setValue("b", "É");
  EXPECT_EQ(made.value("é"), std::nullopt);
}

}  // namespace
}  // namespace Foundation
