#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <Rovani/Rovani.h>

namespace {

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
