// Ranges need no Objective-C: these are plain C++ tests.
#include <gtest/gtest.h>

#include <Rovani/RVRange.h>

namespace {

::testing::AssertionResult Is(const RVRange& range, unsigned location, unsigned length) {
  if (range.Location() == location && range.Length() == length)
    return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "(" << range.Location() << ", " << range.Length()
                                       << ") instead of (" << location << ", " << length << ")";
}

TEST(Range, EmptinessEndAndMembership) {
  RVRange range(7, 0);
  EXPECT_TRUE(range.IsEmpty());
  EXPECT_EQ(range.EndOfRange(), 7u);
  EXPECT_FALSE(range.IsLocationInRange(7));

  RVRange span(3, 4);
  EXPECT_FALSE(span.IsEmpty());
  EXPECT_FALSE(span.IsLocationInRange(2));
  EXPECT_TRUE(span.IsLocationInRange(3));
  EXPECT_TRUE(span.IsLocationInRange(6));
  EXPECT_FALSE(span.IsLocationInRange(7));

  span.Empty();
  EXPECT_TRUE(Is(span, 0, 0));

  // Fields are 32-bit and wrap.
  EXPECT_EQ(RVRange(0xFFFFFFFFu, 2).EndOfRange(), 1u);
}

TEST(Range, UnionKeepsTheDistancePlusTheLongerLength) {
  EXPECT_TRUE(Is(RVRange(0, 10).UnionRange(RVRange(5, 2)), 0, 15));
  EXPECT_TRUE(Is(RVRange(5, 2).UnionRange(RVRange(0, 10)), 0, 15));
  EXPECT_TRUE(Is(RVRange(3, 2).UnionRange(RVRange(3, 4)), 3, 4));
}

TEST(Range, IntersectionIsZeroWhenNothingOverlaps) {
  EXPECT_TRUE(Is(RVRange(0, 10).IntersectionRange(RVRange(5, 10)), 5, 5));
  EXPECT_TRUE(Is(RVRange(0, 5).IntersectionRange(RVRange(5, 5)), 0, 0));
  EXPECT_TRUE(Is(RVRange(10, 5).IntersectionRange(RVRange(0, 3)), 0, 0));
  EXPECT_TRUE(Is(RVRange(2, 8).IntersectionRange(RVRange(4, 2)), 4, 2));
}

TEST(Range, DifferenceUsesTheEndOfTheOtherRange) {
  EXPECT_TRUE(Is(RVRange(0, 10).DifferenceRange(RVRange(0, 4)), 4, 6));
  EXPECT_TRUE(Is(RVRange(2, 10).DifferenceRange(RVRange(2, 4)), 6, 4));
  // The end of the intersection (12) exceeds the length (10): wraps.
  EXPECT_TRUE(Is(RVRange(2, 10).DifferenceRange(RVRange(8, 4)), 12, 0xFFFFFFFEu));
}

TEST(Range, PlatformRangeConversionsCopyBothFields) {
  _NSRange platform;
  platform.location = 123456;
  platform.length = 789;
  RVRange fromPlatform(platform);
  EXPECT_TRUE(Is(fromPlatform, 123456, 789));
  EXPECT_TRUE(fromPlatform == platform);
  EXPECT_TRUE(fromPlatform.IsEqualToRange(platform));

  _NSRange back = RVRange(9, 11);
  EXPECT_EQ(back.length, 11u);
  EXPECT_TRUE(Is(RVRange(0, 10).IntersectionRange(back), 9, 1));
  EXPECT_FALSE(RVRange(9, 12) == back);
}

}  // namespace
