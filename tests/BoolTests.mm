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
  EXPECT_EQ(RVBool(7).Ref(), yes);
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
  EXPECT_TRUE(RVBool(256L));
  EXPECT_TRUE(RVBool(true) == 5);
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

}  // namespace
