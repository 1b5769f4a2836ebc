#include <gtest/gtest.h>

#include "TQStoreKitLib/TQNetworking/TQNetworking.hpp"

namespace TQStoreKitLib {
namespace {

using Foundation::URL;
using Foundation::URLResponse;

const char* const kTemporary = "/tmp/downloads/CFNetwork.tmp";

TQRequest::Destination destinationFor(const std::optional<URL>& url) {
  const URLResponse response({.url = url});
  return TQRequest::defaultDestination(URL::fileURLWithPath(kTemporary), response);
}

std::string placeFor(std::string_view url) {
  return destinationFor(URL::withString(url)).destinationURL.path();
}

TEST(DefaultDestination, IsInTheFolderOfTheTemporaryFileUnderTheServersName) {
  EXPECT_EQ(placeFor("http://example.com/a/report.pdf?x=/y#z"), "/tmp/downloads/report.pdf");
}

TEST(DefaultDestination, DecodesTheServersName) {
  EXPECT_EQ(placeFor("http://example.com/my%20r%C3%A9port.pdf"), "/tmp/downloads/my réport.pdf");
}

TEST(DefaultDestination, HasBothOptions) {
  EXPECT_EQ(destinationFor(URL::withString("http://example.com/a")).options.rawValue(), 3);
}

TEST(DefaultDestination, WithoutURLIsTheTemporaryFilesName) {
  EXPECT_EQ(destinationFor(std::nullopt).destinationURL.path(), kTemporary);
}

TEST(DefaultDestination, WithoutAFileNameInTheURLIsTheTemporaryFilesName) {
  EXPECT_EQ(placeFor("http://example.com"), kTemporary);
  EXPECT_EQ(placeFor("http://example.com/"), kTemporary);
  EXPECT_EQ(placeFor("http://example.com?a=b"), kTemporary);
}

TEST(DefaultDestination, NeverLeadsOutOfTheFolder) {
  EXPECT_EQ(placeFor("http://example.com/a/.."), kTemporary);
  EXPECT_EQ(placeFor("http://example.com/a/%2e%2e"), kTemporary);
  EXPECT_EQ(placeFor("http://example.com/a/."), kTemporary);
  EXPECT_EQ(placeFor("http://example.com/..%2F..%2Fetc%2Fpasswd"), kTemporary);
  EXPECT_EQ(placeFor("http://example.com/a%00b"), kTemporary);
}

TEST(DefaultDestination, FitsWhereADownloadChooses) {
  const TQNetworking::DestinationChoice choice = &TQRequest::defaultDestination;
  const URLResponse response({.url = URL::withString("http://example.com/a")});
  EXPECT_EQ(choice(URL::fileURLWithPath(kTemporary), response).destinationURL.path(),
            "/tmp/downloads/a");
}

}  // namespace
}  // namespace TQStoreKitLib
