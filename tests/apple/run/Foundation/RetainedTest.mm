#include <gtest/gtest.h>

#include <utility>

#include "platform/apple/Retained.hpp"

namespace {

int alive = 0;

}  // namespace

/// Counts those that are alive.
@interface Counted : NSObject
@end

@implementation Counted

- (instancetype)init {
  self = [super init];
  ++alive;
  return self;
}

- (void)dealloc {
  --alive;
  [super dealloc];
}

@end

namespace Foundation {
namespace {

using Owner = Retained<Counted*>;

Owner anOwner() { return Owner::adopt([[Counted alloc] init]); }

class RetainedObject : public testing::Test {
 protected:
  RetainedObject() { alive = 0; }
};

TEST_F(RetainedObject, GoesWithItsOwner) {
  {
    const auto owner = anOwner();
    EXPECT_EQ(alive, 1);
  }
  EXPECT_EQ(alive, 0);
}

TEST_F(RetainedObject, StaysForEachCopy) {
  auto owner = anOwner();
  auto copy = std::make_unique<Owner>(owner);
  owner.reset();
  EXPECT_EQ(alive, 1);
  copy.reset();
  EXPECT_EQ(alive, 0);
}

TEST_F(RetainedObject, MovesWithoutAnotherReference) {
  auto owner = anOwner();
  const auto moved = std::move(owner);
  EXPECT_FALSE(owner);
  EXPECT_EQ([moved.get() retainCount], 1U);
}

TEST_F(RetainedObject, IsReplacedByAssignment) {
  auto owner = anOwner();
  owner = anOwner();
  EXPECT_EQ(alive, 1);
}

TEST_F(RetainedObject, SurvivesAssignmentToItself) {
  auto owner = anOwner();
  auto& same = owner;
  owner = same;
  EXPECT_EQ(alive, 1);
  EXPECT_TRUE(owner);
}

TEST_F(RetainedObject, IsLeftToTheCallerWhenRetained) {
  auto* const object = [[Counted alloc] init];
  {
    const auto owner = Owner::retain(object);
  }
  EXPECT_EQ(alive, 1);
  [object release];
  EXPECT_EQ(alive, 0);
}

TEST_F(RetainedObject, MayBeNone) {
  const Owner none;
  const auto copy = none;
  EXPECT_FALSE(copy);
  EXPECT_EQ(copy.get(), nil);
}

}  // namespace
}  // namespace Foundation
