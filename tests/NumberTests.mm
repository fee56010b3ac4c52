#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <Rovani/Rovani.h>

#include <limits>

namespace {

TEST(Number, ConversionsAndTheBooleanReadingOfSignedChar) {
  RVNumber five(5);
  EXPECT_EQ(static_cast<signed char>(five), 1);
  EXPECT_EQ(static_cast<char>(five), 5);
  EXPECT_DOUBLE_EQ(static_cast<double>(RVNumber(2.5)), 2.5);
  EXPECT_TRUE(static_cast<bool>(five));
  EXPECT_EQ(static_cast<RVBool>(five).Ref(), BoolToRVId(true));

  EXPECT_TRUE(RVNumber(2.5).IsFloatType());
  EXPECT_TRUE(RVNumber(1.5f).IsFloatType());
  EXPECT_FALSE(RVNumber(2).IsFloatType());
  EXPECT_FALSE(RVNumber(true).IsFloatType());
  EXPECT_FALSE(RVNumber('d').IsFloatType());
  EXPECT_FALSE(RVNumber().IsFloatType());
  EXPECT_EQ(RVNumber(1.5).TypeOfNumber(), 0);

  // An empty number reads as zero everywhere, floats included.
  RVNumber empty;
  EXPECT_EQ(static_cast<double>(empty), 0.0);
  EXPECT_EQ(static_cast<float>(empty), 0.0f);
  EXPECT_TRUE(empty == 0);
  EXPECT_TRUE(empty == 0.0);
  EXPECT_FALSE(empty == 1);

  EXPECT_EQ(&RVNumber::False(), &RVNumber::False());
  EXPECT_FALSE(static_cast<bool>(RVNumber::False()));
  EXPECT_EQ(static_cast<int>(RVNumber::False()), 0);
}

TEST(Number, ComparisonsAreExactAtTheArgumentsWidth) {
  EXPECT_TRUE(RVNumber(300) == static_cast<unsigned char>(44));
  EXPECT_TRUE(RVNumber(65536 + 7) == static_cast<unsigned short>(7));
  EXPECT_FALSE(RVNumber(0.1f) == 0.1);
  EXPECT_TRUE(RVNumber(0.1f) == 0.1f);
  RVNumber notANumber(std::numeric_limits<double>::quiet_NaN());
  EXPECT_FALSE(notANumber == notANumber.operator double());
  EXPECT_TRUE(notANumber != 0.0);
  EXPECT_TRUE(RVNumber(2) == true);
  EXPECT_TRUE(RVNumber(0) == RVBool(false));
  EXPECT_TRUE(RVNumber(0) != RVBool(true));
  EXPECT_TRUE(RVNumber(4000000000UL) == 4000000000UL);
}

TEST(Number, ScalarNumbersAreOwnedByTheHandleAlone) {
  // GNUstep's initialisers autorelease a reference of their own, so counts
  // are read around a pool of the test's own.
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  RVNumber made(1234567);
  RVValue boxed(1234567);
  // The value's extra reference is its own autorelease.
  EXPECT_EQ(boxed.RetainCount(), made.RetainCount() + 1);
  [pool drain];
  EXPECT_EQ(made.RetainCount(), 1u);
  EXPECT_EQ(boxed.RetainCount(), 1u);

  NSNumber* given = [NSNumber numberWithInt:99999];
  NSUInteger before = [given retainCount];
  {
    RVNumber held(given);
    EXPECT_EQ([given retainCount], before + 1);
  }
  EXPECT_EQ([given retainCount], before);
}

}  // namespace
