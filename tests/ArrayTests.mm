#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <Rovani/Rovani.h>

namespace {

RVArray Letters(const char* letters) {
  RVArray array;
  for (const char* c = letters; *c; ++c) {
    char text[2] = {*c, 0};
    array.AddObject(RVString(text));
  }
  return array;
}

std::string Joined(const RVArray& array) {
  return [array.ComponentsJoinedByString("").Ref() UTF8String];
}

TEST(Array, ExchangesAndRemovals) {
  RVArray abcd = Letters("abcd");
  abcd.ExchangeObjectAtIndexWithObjectAtIndex(1, 1);
  EXPECT_EQ(Joined(abcd), "abcd");
  abcd.ExchangeObjectAtIndexWithObjectAtIndex(0, 3);
  EXPECT_EQ(Joined(abcd), "dbca");
  abcd.RemoveObjectAtIndex(1);
  abcd.RemoveLastObject();
  EXPECT_EQ(Joined(abcd), "dc");
  abcd.RemoveAllObjects();
  EXPECT_TRUE(abcd.IsEmpty());
  EXPECT_EQ(abcd.Ref(), nil);
  EXPECT_EQ(abcd.Count(), 0u);
}

TEST(Array, SetObjectAtIndexReplacesOnlyEmptyCollectionsWithPlaceholders) {
  RVArray array = Letters("xyz");
  array.SetObjectAtIndex(RVDictionary(), 0);
  array.SetObjectAtIndex(RVArray(), 1);
  EXPECT_TRUE([array.InternalObjectAtIndex(0) isEqual:[NSDictionary dictionary]]);
  EXPECT_TRUE([array.InternalObjectAtIndex(1) isEqual:[NSArray array]]);
  array.SetObjectAtIndex(RVString("w"), 2);
  EXPECT_TRUE(array.StringAtIndex(2) == "w");

  // Any other empty handle is passed on and refused by the platform; the
  // array is unchanged, and once the exception's pool drains, so are its
  // elements' retain counts (the raise leaves references in that pool).
  RVId before = array.Ref();
  NSUInteger elementCount = [array.InternalObjectAtIndex(2) retainCount];
  bool raised = false;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  @try {
    array.SetObjectAtIndex(RVNumber(), 0);
  } @catch (NSException* exception) {
    raised = true;
  }
  [pool drain];
  EXPECT_TRUE(raised);
  EXPECT_EQ(array.Ref(), before);
  EXPECT_EQ([array.InternalObjectAtIndex(2) retainCount], elementCount);
}

TEST(Array, IndicesReachThePlatformUnchecked) {
  RVArray array = Letters("ab");
  NSString* name = nil;
  @try {
    array.ObjectAtIndex(5);
  } @catch (NSException* exception) {
    name = [exception name];
  }
  EXPECT_TRUE([name isEqual:NSRangeException]);
  EXPECT_EQ(array.Count(), 2u);
}

TEST(Array, TypedGettersMakeNoClassTest) {
  RVArray array;
  array.AddObject(RVNumber(65));
  array.AddObject(RVString("text"));
  array.AddObject(RVBool(true));
  array.AddObject(RVDate::DateWithTimeIntervalSinceReferenceDate(60));

  RVString notAString = array.StringAtIndex(0);
  EXPECT_TRUE([notAString.Ref() isKindOfClass:[NSNumber class]]);
  EXPECT_TRUE(array.NumberAtIndex(0) == 65);
  EXPECT_EQ(static_cast<int>(array.ValueAtIndex(0)), 65);
  EXPECT_TRUE(array.BooleanAtIndex(2));
  EXPECT_EQ(array.DateAtIndex(3).TimeIntervalSinceRefereceDate(), 60.0);
  EXPECT_TRUE([array.DateAtIndex(1).Ref() isKindOfClass:[NSString class]]);  // no class test

  RVObject* made = array[1];
  EXPECT_TRUE(made->IsTypeOfClass(RVString::ClassType()));
  delete made;
  made = array.ObjectAtIndex(2);
  EXPECT_TRUE(made->IsTypeOfClass(RVBool::ClassType()));
  delete made;

  RVArray empty;
  EXPECT_EQ(empty.InternalObjectAtIndex(3), nil);
  EXPECT_TRUE(empty.StringAtIndex(0).IsEmpty());
}

TEST(Array, JoiningSplittingAndEquality) {
  RVArray parts = RVString("a,b,,c").ComponentsSeparatedByString(",");
  ASSERT_EQ(parts.Count(), 4u);
  EXPECT_TRUE(parts.StringAtIndex(2) == "");
  EXPECT_TRUE(parts.ComponentsJoinedByString("+") == "a+b++c");
  EXPECT_TRUE(RVString(static_cast<const char*>(nullptr)).ComponentsSeparatedByString(",").IsEmpty());

  NSArray* same = [NSArray arrayWithObjects:@"a", @"b", @"", @"c", nil];
  EXPECT_TRUE(parts == same);
  EXPECT_FALSE(parts != same);
  EXPECT_TRUE(parts != [NSArray array]);
  EXPECT_FALSE(RVArray() == [NSArray array]);
}

}  // namespace
