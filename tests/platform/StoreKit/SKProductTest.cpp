#include "platform/StoreKit/SKProduct.hpp"

#include <gtest/gtest.h>

namespace StoreKit {
namespace {

class Number final : public Foundation::NativeObject {
 public:
  explicit Number(int value) : value_(value) {}
  bool isEqual(const NativeObject& other) const override {
    const auto* number = dynamic_cast<const Number*>(&other);
    return number && number->value_ == value_;
  }
  std::size_t hash() const override { return static_cast<std::size_t>(value_); }

 private:
  int value_;
};

SKProductPtr numbered(int value, std::string identifier = "gems") {
  return std::make_shared<const SKProduct>(
      SKProduct::Values{.productIdentifier = std::move(identifier)},
      std::make_shared<const Number>(value));
}

SKProductPtr withoutNative() {
  return std::make_shared<const SKProduct>(SKProduct::Values{.productIdentifier = "gems"});
}

TEST(SKProduct, WithEqualNativeProductsIsEqual) {
  EXPECT_EQ(*numbered(1), *numbered(1));
  EXPECT_EQ(*numbered(1, "gems"), *numbered(1, "coins"));
}

TEST(SKProduct, WithDifferentNativeProductsDiffers) { EXPECT_FALSE(*numbered(1) == *numbered(2)); }

TEST(SKProduct, WithoutNativeProductEqualsItselfOnly) {
  const auto product = withoutNative();
  EXPECT_EQ(*product, *product);
  EXPECT_FALSE(*product == *withoutNative());
}

TEST(SKProduct, WithNativeProductDiffersFromOneWithout) {
  EXPECT_FALSE(*numbered(1) == *withoutNative());
  EXPECT_FALSE(*withoutNative() == *numbered(1));
}

TEST(SKProduct, HashIsTheNativeProducts) { EXPECT_EQ(numbered(5)->hash(), 5U); }

TEST(SKProduct, HashWithoutNativeProductIsItsIdentitys) {
  const auto product = withoutNative();
  EXPECT_EQ(product->hash(), product->hash());
  EXPECT_NE(product->hash(), withoutNative()->hash());
}

TEST(SKProductSet, HoldsEqualProductsOnce) {
  const SKProductSet products = {numbered(1), numbered(1), numbered(2)};
  EXPECT_EQ(products.size(), 2U);
  EXPECT_EQ(products.count(numbered(2)), 1U);
}

TEST(SKProductSet, FindsOnlyTheVeryProductWithoutNative) {
  const auto product = withoutNative();
  const SKProductSet products = {product, withoutNative()};
  EXPECT_EQ(products.size(), 2U);
  EXPECT_EQ(products.count(product), 1U);
}

TEST(SKProductSet, HoldsNullOnceApartFromProducts) {
  const SKProductSet products = {nullptr, nullptr, numbered(0)};
  EXPECT_EQ(products.size(), 2U);
  EXPECT_EQ(products.count(nullptr), 1U);
}

TEST(SKProduct, GivesBackItsNativeProduct) {
  const auto native = std::make_shared<const Number>(1);
  EXPECT_EQ(SKProduct({}, native).native(), native);
  EXPECT_EQ(withoutNative()->native(), nullptr);
}

}  // namespace
}  // namespace StoreKit
