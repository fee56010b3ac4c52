#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <Rovani/Rovani.h>

namespace {

TEST(Bool, SharedInstancesForEveryWayOfMakingATruth) {
  EXPECT_FALSE(RVBool());
  EXPECT_FALSE(RVBool().IsEmpty());
  RVBool empty(static_cast<RVId>(nil));
  EXPECT_TRUE(empty.IsEmpty());
  EXPECT_FALSE(empty);

  RVId yes = BoolToRVId(true);
  EXPECT_EQ(RVBool(true).Ref(), yes);
  EXPECT_EQ(RVBool(7).Ref(), yes);
  EXPECT_EQ(RVBool::True().Ref(), yes);
  EXPECT_EQ(RVBool::Yes().Ref(), yes);
  EXPECT_EQ(yes, trueBoolNumberConst);
  EXPECT_EQ(RVBool::No().Ref(), falseBoolNumberConst);
  EXPECT_TRUE([yes isKindOfClass:[BoolNumber class]]);
  EXPECT_TRUE([[yes description] isEqual:@"true"]);
  EXPECT_TRUE([[falseBoolNumberConst description] isEqual:@"false"]);

  // Once the shared false instance exists, any value but 1 answers it.
  EXPECT_EQ([[BoolNumber alloc] initWithBool:2], falseBoolNumberConst);
  EXPECT_EQ([[BoolNumber alloc] initWithBool:1], trueBoolNumberConst);

  // A copy takes the shared instance of the truth, not the other's object.
  RVBool fromNumber((RVId)[NSNumber numberWithInt:3]);
  EXPECT_TRUE(fromNumber);
  EXPECT_EQ(RVBool(fromNumber).Ref(), yes);
}

TEST(Bool, InstancesAreMadeOnFirstRequest) {
  // With no shared instances yet, the first initialiser call decides: a
  // value of 2 is stored as it is and becomes the true instance.
  RVId savedTrue = trueBoolNumberConst;
  RVId savedFalse = falseBoolNumberConst;
  trueBoolNumberConst = nil;
  falseBoolNumberConst = nil;
  BoolNumber* two = [[BoolNumber alloc] initWithBool:2];
  id madeTrue = trueBoolNumberConst;
  id made = [BoolNumber falseBoolNumber];
  id madeFalse = falseBoolNumberConst;
  trueBoolNumberConst = savedTrue;
  falseBoolNumberConst = savedFalse;

  EXPECT_EQ(madeTrue, two);
  EXPECT_EQ([two boolValue], 2);
  EXPECT_TRUE([[two description] isEqual:@"true"]);
  EXPECT_EQ(made, madeFalse);
  EXPECT_NE(made, savedFalse);
  EXPECT_FALSE([made boolValue]);
  [two release];
  [made release];
}

TEST(Bool, IntegerWidthsAndComparisons) {
  EXPECT_TRUE(RVBool(-1));
  EXPECT_TRUE(RVBool(256L));
  EXPECT_TRUE(RVBool(static_cast<unsigned short>(1)));
  EXPECT_FALSE(RVBool(static_cast<char>(0)));
  EXPECT_TRUE(RVBool(true) == 5);
  EXPECT_FALSE(RVBool(true) == 0);
  EXPECT_FALSE(RVBool(false) != 0);
  EXPECT_TRUE(RVBool(false) != 3);
  EXPECT_EQ(static_cast<signed char>(RVBool(42)), 1);
  EXPECT_TRUE(!RVBool(false));

  RVBool changing;
  changing = 12UL;
  EXPECT_TRUE(changing);
  changing = static_cast<short>(0);
  EXPECT_FALSE(changing);
  EXPECT_TRUE(changing.ObjectsClassType() == "RVBool");
}

TEST(Number, ConversionsAndTheBooleanReadingOfSignedChar) {
  RVNumber five(5);
  EXPECT_EQ(static_cast<signed char>(five), 1);
  EXPECT_EQ(static_cast<char>(five), 5);
  EXPECT_EQ(static_cast<long>(five), 5L);
  EXPECT_DOUBLE_EQ(static_cast<double>(RVNumber(2.5)), 2.5);
  EXPECT_TRUE(static_cast<bool>(five));
  EXPECT_EQ(static_cast<RVBool>(five).Ref(), BoolToRVId(true));

  EXPECT_TRUE(RVNumber(2.5).IsFloatType());
  EXPECT_TRUE(RVNumber(1.5f).IsFloatType());
  EXPECT_FALSE(RVNumber(2).IsFloatType());
  EXPECT_FALSE(RVNumber(true).IsFloatType());
  EXPECT_FALSE(RVNumber('a').IsFloatType());
  EXPECT_FALSE(RVNumber().IsFloatType());
  EXPECT_EQ(RVNumber(1.5).TypeOfNumber(), 0);
  EXPECT_EQ(RVNumber().TypeOfNumber(), 0);

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
  EXPECT_TRUE(RVNumber(1) == RVNumber(1.0));
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

TEST(Value, DiffersFromNumberWhereItMust) {
  EXPECT_EQ(static_cast<signed char>(RVValue(5)), 1);
  EXPECT_EQ(static_cast<int>(RVValue(5)), 5);
  EXPECT_TRUE(RVValue(true) == static_cast<signed char>(1));
  EXPECT_FALSE(RVValue(true) == static_cast<signed char>(-1));
  EXPECT_FALSE(RVValue(true) == static_cast<signed char>(2));
  EXPECT_TRUE(RVValue(true) == true);
  EXPECT_TRUE(RVValue(65) == 'A');
  // != compares boxes, == compares charValue: 321 reads as 'A' but its box
  // is another number, so both answer true.
  EXPECT_TRUE(RVValue(321) == 'A');
  EXPECT_TRUE(RVValue(321) != 'A');
  EXPECT_FALSE(RVValue(65) != 'A');
  EXPECT_FALSE(RVValue(3) == static_cast<NSValue*>(nil));
  EXPECT_TRUE(RVValue(3) != static_cast<NSValue*>(nil));
  EXPECT_TRUE(RVValue(3) == RVNumber(3));
  EXPECT_TRUE(RVValue(300) == static_cast<unsigned char>(44));

  int target = 0;
  EXPECT_EQ(RVValue::ValueFromPointer(&target).PointerValue(), &target);
  RVValue nullBox = RVValue::ValueFromPointer(nullptr);
  EXPECT_FALSE(nullBox.IsEmpty());
  EXPECT_EQ(nullBox.PointerValue(), nullptr);
  EXPECT_EQ(RVValue().PointerValue(), nullptr);
  EXPECT_FALSE(RVValue());
  EXPECT_EQ(&RVValue::False(), &RVValue::False());
  EXPECT_FALSE(static_cast<bool>(RVValue::False()));
}

}  // namespace
