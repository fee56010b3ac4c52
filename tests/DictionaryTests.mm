#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <Rovani/Rovani.h>

#include "support/TestSupport.h"

namespace {

TEST(Dictionary, ChangesLeaveNoReferencesInTheCallersPool) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  RVNumber value(424242);
  NSUInteger before = value.RetainCount();
  RVDictionary d;
  RVArray a;
  for (int i = 0; i < 20; ++i) {
    d.SetObjectForKey(value, RVString::StringWithFormat("k%d", i));
    a.AddObject(value);
  }
  EXPECT_EQ(value.RetainCount(), before + 40);
  [pool drain];
}

TEST(Dictionary, SetObjectStoresPlaceholdersForEmptyHandles) {
  RVDictionary d;
  d.SetObjectForKey(RVString(), "string");
  d.SetObjectForKey(RVArray(), "array");
  d.SetObjectForKey(RVDictionary(), "dictionary");
  d.SetObjectForKey(RVNumber(), "number");
  d.SetObjectForKey(RVObject(), "object");
  d.SetObjectForKey(RVBool(static_cast<RVId>(nil)), "bool");
  EXPECT_EQ(d.Count(), 6u);
  EXPECT_TRUE([d.InternalValueForKey("string") isEqual:@""]);
  EXPECT_TRUE([d.InternalValueForKey("array") isEqual:[NSArray array]]);
  EXPECT_TRUE([d.InternalValueForKey("dictionary") isEqual:[NSDictionary dictionary]]);
  EXPECT_EQ(d.InternalValueForKey("number"), [NSNull null]);
  EXPECT_EQ(d.InternalValueForKey("object"), [NSNull null]);
  // An empty boolean is stored as the platform number of its truth.
  id storedBool = d.InternalValueForKey("bool");
  EXPECT_TRUE([storedBool isKindOfClass:[NSNumber class]]);
  EXPECT_FALSE([storedBool isKindOfClass:[BoolNumber class]]);
  EXPECT_FALSE([storedBool boolValue]);
}

TEST(Dictionary, SetValueRemovesTheKeyForEmptyHandlesOfOtherClasses) {
  RVDictionary d;
  d.SetObjectForKey(RVNumber(1), "number");
  d.SetValueForKey(RVNumber(), "number");
  EXPECT_EQ(d.InternalValueForKey("number"), nil);
  d.SetValueForKey(RVObject(), "object");
  EXPECT_EQ(d.InternalValueForKey("object"), [NSNull null]);
  d.SetValueForKey(RVString(), "string");
  EXPECT_TRUE([d.InternalValueForKey("string") isEqual:@""]);
  d.SetValueForKey(RVData::DataWithBytes("", 0), "bytes");
  EXPECT_EQ([d.InternalValueForKey("bytes") length], 0u);
  EXPECT_EQ(d.Count(), 3u);
}

TEST(Dictionary, TypedGettersAnswerEmptyHandlesForMissesAndOtherClasses) {
  RVDictionary d;
  d.SetObjectForKey(RVNumber(0), "zero");
  d.SetObjectForKey(RVNumber(2), "two");
  d.SetObjectForKey(RVBool(true), "yes");
  d.SetObjectForKey(RVString("text"), "text");
  RVDictionary inner;
  inner.SetObjectForKey(RVString("v"), "k");
  d.SetObjectForKey(inner, "inner");
  RVArray list;
  list.AddObject(RVString("x"));
  d.SetObjectForKey(list, "list");
  d.SetObjectForKey(RVData(RVString("bytes")), "data");
  d.SetObjectForKey(RVDate::DateWithTimeIntervalSinceReferenceDate(60), "date");

  EXPECT_FALSE(d.BooleanForKey("zero"));
  EXPECT_TRUE(d.BooleanForKey("two"));
  EXPECT_FALSE(d.BooleanForKey("text"));

  EXPECT_TRUE(d.StringForKey("zero").IsEmpty());
  EXPECT_TRUE(d.StringForKey("text") == "text");
  EXPECT_TRUE(d.NumberForKey("two") == 2);
  EXPECT_TRUE(d.NumberForKey("yes").IsEmpty());  // a boolean is not a number
  EXPECT_TRUE(d.DictionaryForKey("inner").StringForKey("k") == "v");
  EXPECT_EQ(d.ArrayForKey("list").Count(), 1u);
  EXPECT_EQ(d.DataForKey("data").Length(), 5u);
  EXPECT_TRUE(d.DataForKey("text").IsEmpty());
  EXPECT_EQ(d.DateForKey("date").TimeIntervalSinceRefereceDate(), 60.0);
  EXPECT_TRUE(d.DateForKey("data").IsEmpty());

  EXPECT_TRUE(d.ObjectsClassTypeForKey("yes") == "RVBool");
  EXPECT_TRUE(d.ObjectsClassTypeForKey("missing").IsEmpty());
  EXPECT_EQ(d.ValueOfClassTypeForKey("RVString", "two"), nullptr);
  EXPECT_EQ(d.ValueForKey("missing"), nullptr);

  RVObject* converted = d.ValueOfClassTypeForKey(RVBool::ClassType(), "two");
  ASSERT_NE(converted, nullptr);
  EXPECT_TRUE(converted->IsTypeOfClass("RVBool"));
  EXPECT_EQ(converted->Ref(), BoolToRVId(true));
  delete converted;

  RVId raw = nil;
  EXPECT_TRUE(d.RVIdForKeyIfPresent("text", raw));
  EXPECT_TRUE([raw isEqual:@"text"]);
  EXPECT_FALSE(d.RVIdForKeyIfPresent("missing", raw));
  EXPECT_EQ(raw, nil);
}

TEST(Dictionary, AddDictionaryLetsTheArgumentWin) {
  RVDictionary base;
  base.SetObjectForKey(RVString("old"), "shared");
  base.SetObjectForKey(RVString("mine"), "only-base");
  RVId before = base.Ref();
  base.AddDictionary(base);
  base.AddDictionary(RVDictionary());
  EXPECT_EQ(base.Ref(), before);

  RVDictionary other;
  other.SetObjectForKey(RVString("new"), "shared");
  other.SetObjectForKey(RVString("theirs"), "only-other");
  base += other;
  EXPECT_EQ(base.Count(), 3u);
  EXPECT_TRUE(base.StringForKey("shared") == "new");
  base.RemoveObjectForKey("shared");
  EXPECT_EQ(base.InternalValueForKey("shared"), nil);

  RVDictionary empty;
  empty += [NSDictionary dictionaryWithObject:@"v" forKey:@"k"];
  EXPECT_TRUE(empty.StringForKey("k") == "v");
}

TEST(Dictionary, ReadsDictionaryBodiesAndBooleansAsBooleans) {
  RVDictionary body(DataFromText("<key>a</key><string>b</string>"));
  EXPECT_TRUE(body.StringForKey("a") == "b");

  const char* arrayRoot =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\">"
      "<array><string>x</string></array></plist>";
  EXPECT_TRUE(RVDictionary(DataFromText(arrayRoot)).IsEmpty());
  EXPECT_TRUE(RVDictionary(RVData()).IsEmpty());

  RVDictionary d;
  d.SetObjectForKey(RVBool(true), "yes");
  d.SetObjectForKey(RVBool(false), "no");
  d.SetObjectForKey(RVNumber(true), "number");
  d.SetObjectForKey(RVNumber(3), "n");
  RVData xml(d);
  EXPECT_NE(Text(RVString(xml)).find("<key>no</key>\n    <false/>"), std::string::npos);
  RVDictionary back(xml);
  EXPECT_TRUE(back.BooleanForKey("yes"));
  EXPECT_FALSE(back.BooleanForKey("no"));
  EXPECT_EQ(back.InternalValueForKey("no"), [NSNumber numberWithBool:NO]);
  EXPECT_EQ(back.InternalValueForKey("number"), [NSNumber numberWithBool:YES]);
  EXPECT_TRUE(back.NumberForKey("n") == 3);
}

TEST(Dictionary, PropertyListFiles) {
  ScratchDir dir;
  RVString path(dir.File("settings.plist").c_str());
  RVDictionary d;
  d.SetObjectForKey(RVString("value"), "key");
  ASSERT_TRUE(d.WriteToFileAtomically(path));
  EXPECT_TRUE(RVDictionary::DictionaryWithContentsOfFile(path).StringForKey("key") == "value");
  ASSERT_TRUE(d.WriteToFile(path));

  EXPECT_FALSE(d.WriteToFile(dir.File("missing/dir/x.plist").c_str()));
  EXPECT_TRUE(RVDictionary::DictionaryWithContentsOfFile(dir.File("none").c_str()).IsEmpty());

  // What a property list cannot hold fails the whole write: the file keeps
  // what it held, the data is empty.
  RVData before = RVData::DataWithContentsOfFile(path);
  RVDictionary holdsNull = d;
  holdsNull.SetObjectForKey(RVObject(), "null");
  NSDate* year10000 = [NSDate dateWithTimeIntervalSinceReferenceDate:252423993600.0];
  for (RVDictionary refused : {holdsNull, RVDictionary(@{@1 : @"key"}),
                               RVDictionary(@{@"control" : @"\x01"}),
                               RVDictionary(@{@"date" : year10000})}) {
    EXPECT_FALSE(refused.WriteToFile(path));
    EXPECT_FALSE(refused.WriteToFileAtomically(path));
    EXPECT_TRUE(RVData::DataWithContentsOfFile(path) == before);
    EXPECT_TRUE(RVData(refused).IsEmpty());
  }
}

}  // namespace
