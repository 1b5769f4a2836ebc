#include <gtest/gtest.h>

#include "tests/tools/ToolRun.hpp"

namespace {

ToolRun productsOf(const std::string& path) {
  return runTool({"--config", path, "--json", "products"});
}

void expectRefused(const ToolRun& run, const std::string& file) {
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_EQ(run.output, "");
  EXPECT_EQ(run.errors.rfind("tqstore: " + file + ": ", 0), 0U) << run.errors;
}

TEST(BadInput, AMissingFileIsRefused) { expectRefused(productsOf("/nowhere/x"), "/nowhere/x"); }

TEST(BadInput, AFolderIsRefused) { expectRefused(productsOf("/tmp"), "/tmp"); }

TEST(BadInput, ADeviceThatNeverEndsIsRefused) {
  expectRefused(productsOf("/dev/zero"), "/dev/zero");
}

TEST(BadInput, ATextThatIsNotAConfigurationIsRefusedWithItsPlace) {
  for (const char* text : {"", "  \n", "{", "[]", "null", "{\"products\": {}}",
                           "{\"products\": [{\"productID\": 7}]}", "{} {}", "\xff\xfe"}) {
    const TemporaryFile file(text);
    expectRefused(productsOf(file.path()), file.path());
  }
}

TEST(BadInput, AHundredMegabytesOfNestingAreRefused) {
  const TemporaryFile file(std::string(100U << 20U, '['));

  expectRefused(productsOf(file.path()), file.path());
}

TEST(BadInput, AnOddPriceIsReadInADefinedWayWithAWarning) {
  const TemporaryFile file(
      R"({"products": [{"productID": "a", "type": "Consumable", "displayPrice": "2,99"}]})");

  const auto run = productsOf(file.path());

  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.json().at(0)["price"], "2.99");
  EXPECT_NE(run.errors.find("warning: "), std::string::npos);
  EXPECT_NE(run.errors.find("/products/0/displayPrice"), std::string::npos);
}

}  // namespace
