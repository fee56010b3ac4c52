#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <memory>

#include <Rovani/Rovani.h>

#include "support/LogCapture.h"

// Handle classes of the test's own, to show how class types come from the
// length-prefixed type name: one character is dropped, whatever the prefix.
class RVShortName : public RVObject {};    // "11RVShortName"
class RVTwelveChars : public RVObject {};  // "13RVTwelveChars"

namespace {

NSObject* NewObject() { return [[NSObject alloc] init]; }

std::string CreatedClassType(id object) {
  std::unique_ptr<RVObject> made(RVObject::Create(object));
  return [made->ObjectsClassType().Ref() UTF8String];
}

TEST(ObjectHandle, ClassTypesDropExactlyOneCharacterOfTheTypeName) {
  EXPECT_TRUE(RVString::ClassType() == "RVString");
  EXPECT_TRUE(RVShortName().ObjectsClassType() == "1RVShortName");
  EXPECT_TRUE(RVTwelveChars().ObjectsClassType() == "3RVTwelveChars");
  EXPECT_FALSE(RVShortName().IsTypeOfClass("RVShortName"));

  // The class type follows the dynamic type, also through a base reference.
  RVString text("x");
  const RVObject& asBase = text;
  EXPECT_TRUE(asBase.IsTypeOfClass("RVString"));
  EXPECT_FALSE(asBase.IsTypeOfClass("RVObject"));
  EXPECT_FALSE(asBase.IsTypeOfClass(RVString(static_cast<const char*>(nullptr))));
  EXPECT_TRUE(asBase.IsSameClassTypeAs(RVString("y")));
  EXPECT_FALSE(asBase.IsSameClassTypeAs(RVObject()));
}

TEST(ObjectHandle, RetainsOnceAndReleasesOnEveryExit) {
  NSObject* object = NewObject();
  ASSERT_EQ([object retainCount], 1u);
  {
    RVObject handle(object);
    EXPECT_EQ(handle.RetainCount(), 2u);
    handle = object;  // the pointer already held: nothing changes
    EXPECT_EQ([object retainCount], 2u);
    handle = handle;
    EXPECT_EQ([object retainCount], 2u);

    RVObject second(handle);
    EXPECT_EQ([object retainCount], 3u);
    second.Empty();
    EXPECT_TRUE(second.IsEmpty());
    EXPECT_EQ([object retainCount], 2u);

    NSObject* other = NewObject();
    second = other;
    handle = second;  // releases the old object, retains the new one
    EXPECT_EQ([object retainCount], 1u);
    EXPECT_EQ([other retainCount], 3u);
    [other release];
    handle.Release();
    EXPECT_EQ(handle.Ref(), nil);
    EXPECT_EQ(handle.RetainCount(), 0u);
    handle = object;
  }
  EXPECT_EQ([object retainCount], 1u);
  [object release];
}

TEST(ObjectHandle, EmptyIsNeverEqualAndDescribesAsNil) {
  RVObject empty;
  EXPECT_FALSE(empty == nil);
  EXPECT_FALSE(empty == RVObject());

  RVObject a(@"same");
  NSString* equalText = [NSString stringWithFormat:@"%@", @"same"];
  EXPECT_TRUE(a == equalText);
  EXPECT_TRUE(a == RVObject(equalText));
  EXPECT_TRUE(a != RVObject(@"other"));
  EXPECT_FALSE(a == nil);
  EXPECT_EQ(empty.Description().Ref(), nil);
}

TEST(ObjectHandle, CheckedCopyAlwaysCopiesAcrossClassesWithoutLogging) {
  LogCapture log;
  RVString text("shared");
  RVObject fromString(text);
  EXPECT_EQ(fromString.Ref(), text.Ref());
  EXPECT_TRUE(fromString.IsTypeOfClass("RVObject"));

  RVShortName custom;
  static_cast<RVObject&>(custom) = text;  // assignment between classes makes no test
  RVObject fromCustom(custom);
  EXPECT_EQ(fromCustom.Ref(), text.Ref());
  EXPECT_EQ(text.RetainCount(), 4u);
  EXPECT_TRUE(log.Lines().empty());
}

TEST(Factory, PicksTheHandleClassInItsBindingOrder) {
  EXPECT_EQ(CreatedClassType([NSMutableString stringWithString:@"m"]), "RVString");
  EXPECT_EQ(CreatedClassType([NSMutableDictionary dictionary]), "2RVDictionary");
  EXPECT_EQ(CreatedClassType([NSMutableData dataWithLength:2]), "RVData");
  EXPECT_EQ(CreatedClassType([NSMutableArray array]), "RVArray");
  EXPECT_EQ(CreatedClassType(BoolToRVId(true)), "RVBool");
  EXPECT_EQ(CreatedClassType([NSNumber numberWithBool:YES]), "RVNumber");
  EXPECT_EQ(CreatedClassType([NSValue valueWithPointer:nullptr]), "RVValue");
  EXPECT_EQ(CreatedClassType([NSError errorWithDomain:@"D" code:1 userInfo:nil]), "RVError");
  EXPECT_EQ(CreatedClassType([[NSArray array] objectEnumerator]), "2RVEnumerator");
  EXPECT_EQ(CreatedClassType([NSDate date]), "RVDate");
  EXPECT_EQ(CreatedClassType([NSURL URLWithString:@"http://h/p"]), "RVURL");
  EXPECT_EQ(CreatedClassType([NSBundle mainBundle]), "RVBundle");

  std::unique_ptr<RVObject> null(RVObject::Create([NSNull null]));
  EXPECT_TRUE(null->IsEmpty());
  EXPECT_TRUE(null->IsTypeOfClass("RVObject"));
  std::unique_ptr<RVObject> nothing(RVObject::Create(nil));
  EXPECT_TRUE(nothing->IsEmpty());

  NSSet* set = [[NSSet alloc] initWithObjects:@"x", nil];
  {
    std::unique_ptr<RVObject> held(RVObject::Create(set));
    EXPECT_TRUE(held->IsTypeOfClass("RVObject"));
    EXPECT_EQ(held->Ref(), set);
    EXPECT_EQ([set retainCount], 2u);
  }
  EXPECT_EQ([set retainCount], 1u);
  [set release];
}

}  // namespace
