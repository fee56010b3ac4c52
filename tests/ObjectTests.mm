#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <Rovani/Rovani.h>

#include "support/LogCapture.h"

// Handle classes of the test's own, to show how class types come from the
// length-prefixed type name: one character is dropped, whatever the prefix.
class RVShortName : public RVObject {};    // "11RVShortName"
class RVTwelveChars : public RVObject {};  // "13RVTwelveChars"

namespace {

NSObject* NewObject() { return [[NSObject alloc] init]; }

TEST(ObjectHandle, ClassTypesDropExactlyOneCharacterOfTheTypeName) {
  EXPECT_TRUE(RVObject().ObjectsClassType() == "RVObject");
  EXPECT_TRUE(RVObject::ClassType() == "RVObject");
  EXPECT_TRUE(RVString().ObjectsClassType() == "RVString");
  EXPECT_TRUE(RVString::ClassType() == "RVString");
  EXPECT_TRUE(RVShortName().ObjectsClassType() == "1RVShortName");
  EXPECT_TRUE(RVTwelveChars().ObjectsClassType() == "3RVTwelveChars");
  EXPECT_FALSE(RVShortName().IsTypeOfClass("RVShortName"));

  // The class type follows the dynamic type, also through a base reference.
  RVString text("x");
  const RVObject& asBase = text;
  EXPECT_TRUE(asBase.IsTypeOfClass(RVString::ClassType()));
  EXPECT_TRUE(asBase.IsTypeOfClass("RVString"));
  EXPECT_FALSE(asBase.IsTypeOfClass("RVObject"));
  EXPECT_FALSE(asBase.IsTypeOfClass(RVString(static_cast<const char*>(nullptr))));
  EXPECT_TRUE(asBase.IsSameClassTypeAs(RVString("y")));
  EXPECT_FALSE(asBase.IsSameClassTypeAs(RVObject()));
}

TEST(ObjectHandle, ClassTypesAreComputedOncePerType) {
  // Every answer for one type is the same string object: nothing is built
  // again per query.
  EXPECT_EQ(RVString::ClassType().Ref(), RVString("a").ObjectsClassType().Ref());
  EXPECT_EQ(RVObject::ClassType().Ref(), RVObject().ObjectsClassType().Ref());
  EXPECT_NE(RVObject::ClassType().Ref(), RVString::ClassType().Ref());
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

TEST(ObjectHandle, EqualityAsksTheHeldObjectSoEmptyIsNeverEqual) {
  RVObject empty;
  EXPECT_FALSE(empty == nil);
  EXPECT_TRUE(empty != nil);
  EXPECT_FALSE(empty == RVObject());

  RVObject a(@"same");
  NSString* equalText = [NSString stringWithFormat:@"%@", @"same"];
  EXPECT_TRUE(a == equalText);
  EXPECT_TRUE(a == RVObject(equalText));
  EXPECT_TRUE(a != RVObject(@"other"));
  EXPECT_FALSE(a == nil);
}

TEST(ObjectHandle, DescriptionOfEmptyHandleIsNilString) {
  RVString description = RVObject().Description();
  EXPECT_TRUE(description.IsEmpty());
  EXPECT_EQ(description.Ref(), nil);

  NSNumber* number = [NSNumber numberWithInt:42];
  EXPECT_TRUE(RVObject(number).Description() == "42");
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

TEST(ObjectHandle, FreeFunctionsAndGlobals) {
  NSObject* object = NewObject();
  [object retain];
  SafeCFRelease(object);
  EXPECT_EQ([object retainCount], 1u);
  SafeCFRelease(nullptr);  // nothing to release
  [object release];

  ASSERT_NE(kNullStringBuffer, nullptr);
  EXPECT_EQ(kNullStringBuffer[0], '\0');
}

TEST(AutoreleasePool, DrainsWhatWasAutoreleasedInsideIt) {
  NSObject* object = NewObject();
  [object retain];
  {
    RVAutoreleasePool pool;
    [object autorelease];
    EXPECT_EQ([object retainCount], 2u);
  }
  EXPECT_EQ([object retainCount], 1u);
  [object release];
}

}  // namespace
