#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <Rovani/Rovani.h>

namespace {

TEST(Enumerator, WalksKeysWithASharedCursorAndEndsOnAnEmptyString) {
  RVDictionary d;
  d.SetObjectForKey(RVNumber(1), "a");
  d.SetObjectForKey(RVNumber(2), "b");
  d.SetObjectForKey(RVNumber(3), "c");
  RVEnumerator keys = d.KeyEnumerator();
  RVEnumerator sameCursor(keys);
  RVString first = keys.NextStringObject();
  RVObject* second = sameCursor.NextObject();
  ASSERT_NE(second, nullptr);
  EXPECT_TRUE(second->IsTypeOfClass(RVString::ClassType()));
  EXPECT_FALSE(first == *second);
  delete second;
  EXPECT_EQ(keys.AllObjects().Count(), 1u);
  EXPECT_TRUE(keys.NextStringObject().IsEmpty());
  EXPECT_FALSE(keys.IsEmpty());
  RVObject* end = keys.NextObject();
  EXPECT_TRUE(end->IsEmpty());
  EXPECT_TRUE(end->IsTypeOfClass("RVObject"));
  delete end;

  RVEnumerator none = RVDictionary().KeyEnumerator();
  EXPECT_TRUE(none.IsEmpty());
  EXPECT_TRUE(none.NextStringObject().IsEmpty());
  EXPECT_TRUE(none.AllObjects().IsEmpty());
  EXPECT_TRUE(none.ObjectsClassType() == "2RVEnumerator");
}

}  // namespace
