#include "platform/Foundation/URLResponse.hpp"

#include <gtest/gtest.h>

namespace Foundation {
namespace {

TEST(URLResponse, IsOfUnknownLengthUnlessSomebodySays) {
  EXPECT_EQ(URLResponse({}).expectedContentLength(), kUnknownLength);
  EXPECT_EQ(kUnknownLength, -1);
}

TEST(URLResponse, OfHTTPFindsItsFieldsInAnyLetterCase) {
  const HTTPURLResponse response({}, 404, {{"Content-Type", "text/plain"}});
  EXPECT_EQ(response.value("content-type"), "text/plain");
  EXPECT_EQ(response.value("Accept"), std::nullopt);
}

TEST(URLResponse, IsAnHTTPResponseOnlyIfItIsOne) {
  const auto http =
      std::make_shared<const HTTPURLResponse>(URLResponse::Contents(), 200, HTTPHeaderFields());
  EXPECT_EQ(httpResponse(http), http);
  EXPECT_EQ(httpResponse(std::make_shared<const URLResponse>(URLResponse::Contents())), nullptr);
  EXPECT_EQ(httpResponse(nullptr), nullptr);
}

}  // namespace
}  // namespace Foundation
