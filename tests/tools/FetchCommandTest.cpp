#include <gtest/gtest.h>

#include "tests/server/HttpServer.hpp"
#include "tests/tools/ToolRun.hpp"

namespace {

class FetchCommand : public testing::Test {
 protected:
  ToolRun fetch(const std::string& path) const { return runTool({"fetch", server.url(path)}); }

  tests::HttpServer server;
};

TEST_F(FetchCommand, WritesTheBodyAndNothingElse) {
  const auto run = fetch("/text");

  EXPECT_EQ(run.output, "The quick brown fox jumps over the lazy dog.");
  EXPECT_EQ(run.errors, "");
  EXPECT_EQ(run.exitStatus, 0);
}

TEST_F(FetchCommand, WritesBytesAsTheyAre) {
  EXPECT_EQ(fetch("/bytes/100000").output, tests::patternedBytes(100000));
}

TEST_F(FetchCommand, EndsWellWhateverTheHttpStatus) {
  const auto run = fetch("/status/500");

  EXPECT_EQ(run.output, "status 500");
  EXPECT_EQ(run.exitStatus, 0);
}

TEST_F(FetchCommand, WritesNothingForAnAnswerWithoutABody) {
  EXPECT_EQ(fetch("/status/204").output, "");
  EXPECT_EQ(fetch("/status/204").exitStatus, 0);
}

TEST_F(FetchCommand, FollowsRedirects) { EXPECT_EQ(fetch("/redirect?to=/text").exitStatus, 0); }

TEST_F(FetchCommand, SaysWhyNoAnswerCame) {
  const auto run = fetch("/hang-up");

  EXPECT_EQ(run.output, "");
  EXPECT_EQ(run.errors, "tqstore: The connection to 127.0.0.1 was lost.\n");
  EXPECT_EQ(run.exitStatus, 1);
}

TEST_F(FetchCommand, WritesNothingOfABodyThatBrokeOff) {
  const auto run = fetch("/early-close");

  EXPECT_EQ(run.output, "");
  EXPECT_EQ(run.exitStatus, 1);
}

TEST(FetchCommandUsage, AnAddressIsOne) {
  for (const char* text : {"", "example.com", "/path", "http://a b/"}) {
    const auto run = runTool({"fetch", text});
    EXPECT_EQ(run.exitStatus, 2) << text;
    EXPECT_NE(run.errors.find("is not an address"), std::string::npos) << text;
  }
  EXPECT_EQ(runTool({"fetch"}).exitStatus, 2);
}

TEST(FetchCommandUsage, OtherKindsOfAddressesAreNotLoaded) {
  const auto run = runTool({"fetch", "ftp://127.0.0.1/file"});

  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_NE(run.errors.find("Addresses of the kind \"ftp\" cannot be loaded"), std::string::npos);
}

}  // namespace
