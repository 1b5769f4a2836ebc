#include "platform/Foundation/Bundle.hpp"

#include <gtest/gtest.h>

#include "platform/embedded/Foundation/MainBundle.hpp"

namespace Foundation {
namespace {

class Bundle : public testing::Test {
 protected:
  ~Bundle() override { setMainBundleStrings({}); }
};

TEST_F(Bundle, WithoutTranslationTheKeyIsTheText) { EXPECT_EQ(localizedString("Buy"), "Buy"); }

TEST_F(Bundle, TranslatesWhatTheTableHas) {
  setMainBundleStrings({{"Buy", "Kaufen"}});
  EXPECT_EQ(localizedString("Buy"), "Kaufen");
  EXPECT_EQ(localizedString("buy"), "buy");
}

TEST_F(Bundle, EmptyTranslationIsATranslation) {
  setMainBundleStrings({{"Buy", ""}});
  EXPECT_EQ(localizedString("Buy"), "");
}

TEST_F(Bundle, ReplacedTableShowsAtTheNextCall) {
  setMainBundleStrings({{"Buy", "Kaufen"}, {"Sell", "Verkaufen"}});
  setMainBundleStrings({{"Buy", "Acheter"}});
  EXPECT_EQ(localizedString("Buy"), "Acheter");
  EXPECT_EQ(localizedString("Sell"), "Sell");
}

}  // namespace
}  // namespace Foundation
