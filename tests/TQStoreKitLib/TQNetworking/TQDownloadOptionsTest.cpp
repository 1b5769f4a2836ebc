#include "TQStoreKitLib/TQNetworking/TQDownloadOptions.hpp"

#include <gtest/gtest.h>

namespace TQStoreKitLib {
namespace {

using Options = TQDownloadOptions;

constexpr Options kRemove = Options::removePreviousFile();
constexpr Options kCreate = Options::createIntermediateDirectories();
constexpr Options kBoth{kRemove, kCreate};
constexpr Options kNone;

TEST(TQDownloadOptions, HaveTheirRawValues) {
  EXPECT_EQ(kRemove.rawValue(), 1);
  EXPECT_EQ(kCreate.rawValue(), 2);
}

TEST(TQDownloadOptions, KeepAnyRawValue) {
  EXPECT_EQ(Options(std::int64_t{-5}).rawValue(), -5);
  EXPECT_EQ(Options(std::int64_t{3}), kBoth);
}

TEST(TQDownloadOptions, AreMadeFromAList) {
  EXPECT_EQ(kBoth.rawValue(), 3);
  EXPECT_EQ((Options{kRemove}), kRemove);
  EXPECT_EQ((Options{}), kNone);
}

TEST(TQDownloadOptions, UnionHasWhatIsInEither) {
  EXPECT_EQ(kRemove | kCreate, kBoth);
  EXPECT_EQ(kRemove | kRemove, kRemove);
}

TEST(TQDownloadOptions, IntersectionHasWhatIsInBoth) {
  EXPECT_EQ(kBoth & kCreate, kCreate);
  EXPECT_EQ(kRemove & kCreate, kNone);
}

TEST(TQDownloadOptions, SymmetricDifferenceHasWhatIsInOne) {
  EXPECT_EQ(kBoth ^ kCreate, kRemove);
  EXPECT_EQ(kRemove ^ kCreate, kBoth);
}

TEST(TQDownloadOptions, InsertPutsInAndSaysWhetherAnythingWasNew) {
  auto options = kRemove;
  EXPECT_FALSE(options.insert(kRemove));
  EXPECT_TRUE(options.insert(kBoth));
  EXPECT_EQ(options, kBoth);
}

TEST(TQDownloadOptions, RemoveTakesOutAndGivesWhatWasIn) {
  auto options = kRemove;
  EXPECT_EQ(options.remove(kBoth), kRemove);
  EXPECT_EQ(options, kNone);
  EXPECT_EQ(options.remove(kBoth), std::nullopt);
}

TEST(TQDownloadOptions, RemoveLeavesTheOthers) {
  auto options = kBoth;
  EXPECT_EQ(options.remove(kCreate), kCreate);
  EXPECT_EQ(options, kRemove);
}

TEST(TQDownloadOptions, UpdatePutsInAndGivesWhatWasInBefore) {
  auto options = kRemove;
  EXPECT_EQ(options.update(kCreate), std::nullopt);
  EXPECT_EQ(options.update(kBoth), kBoth);
  EXPECT_EQ(options, kBoth);
}

TEST(TQDownloadOptions, ContainAllOfAnotherSetOrNot) {
  EXPECT_TRUE(kBoth.contains(kRemove));
  EXPECT_TRUE(kBoth.contains(kBoth));
  EXPECT_TRUE(kRemove.contains(kNone));
  EXPECT_FALSE(kRemove.contains(kBoth));
}

TEST(TQDownloadOptions, AreSubsetsOfWhatContainsThem) {
  EXPECT_TRUE(kRemove.isSubset(kBoth));
  EXPECT_TRUE(kBoth.isSubset(kBoth));
  EXPECT_FALSE(kBoth.isSubset(kRemove));
}

TEST(TQDownloadOptions, AreSupersetsOfWhatTheyContain) {
  EXPECT_TRUE(kBoth.isSuperset(kRemove));
  EXPECT_TRUE(kBoth.isSuperset(kBoth));
  EXPECT_FALSE(kRemove.isSuperset(kBoth));
}

TEST(TQDownloadOptions, AreDisjointWithoutACommonOption) {
  EXPECT_TRUE(kRemove.isDisjoint(kCreate));
  EXPECT_TRUE(kNone.isDisjoint(kNone));
  EXPECT_FALSE(kRemove.isDisjoint(kBoth));
}

TEST(TQDownloadOptions, AreEmptyWithoutAnyOption) {
  EXPECT_TRUE(kNone.isEmpty());
  EXPECT_FALSE(kCreate.isEmpty());
}

}  // namespace
}  // namespace TQStoreKitLib
