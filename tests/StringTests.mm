#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <Rovani/Rovani.h>

#include "support/LogCapture.h"
#include "support/TestSupport.h"

// Built during this program's own static initialisation, after the library
// has loaded: the library's strings must already be in place by then.
static const RVString gDefaultAtLoad;
static const RVId gEmptyLiteralAtLoad = kgRVInternalEmptyString.Ref();

// A string whose description is not its text.
@interface RVDescribedString : NSString
@end
@implementation RVDescribedString
- (NSUInteger)length { return 3; }
- (unichar)characterAtIndex:(NSUInteger)index { return "abc"[index]; }
- (NSString*)description { return @"described"; }
@end

namespace {

TEST(String, LibraryStringsExistFromLoadAndDefaults) {
  ASSERT_NE(gEmptyLiteralAtLoad, nil);
  EXPECT_EQ(gEmptyLiteralAtLoad, kgRVInternalEmptyString.Ref());
  EXPECT_EQ(gDefaultAtLoad.Ref(), kgRVInternalEmptyString.Ref());
  EXPECT_EQ(kFilePathSeperator.Length(), 1u);
  EXPECT_EQ([kFilePathSeperator.Ref() characterAtIndex:0], 0x5C);

  // The default is the empty literal, but a null C string is nil.
  RVString byDefault;
  RVString fromNull(static_cast<const char*>(nullptr));
  EXPECT_EQ(byDefault.Ref(), kgRVInternalEmptyString.Ref());
  EXPECT_EQ(fromNull.Ref(), nil);
  EXPECT_TRUE(fromNull.IsEmpty());
  EXPECT_FALSE(fromNull == byDefault);
  EXPECT_FALSE(fromNull == fromNull);

  RVString assigned("text");
  assigned = static_cast<const char*>(nullptr);
  EXPECT_EQ(assigned.Ref(), nil);

  // A null or non-string Core Foundation reference gives the default.
  EXPECT_EQ(RVString(static_cast<CFStringRef>(nullptr)).Ref(), kgRVInternalEmptyString.Ref());
  EXPECT_EQ(RVString((CFStringRef)[NSArray array]).Ref(), kgRVInternalEmptyString.Ref());
  NSString* platform = @"bridged";
  EXPECT_EQ(RVString((CFStringRef)platform).Ref(), platform);
}

TEST(String, ConstructionFromTextAndObjects) {
  // Wide strings are read as 16-bit units.
  const char16_t units[] = u"w\u00e9de";
  EXPECT_EQ(Text(RVString(reinterpret_cast<const wchar_t*>(units))), "w\xC3\xA9" "de");

  // Another handle: its string, or else its description.
  RVObject holdsString(@"held");
  EXPECT_EQ(RVString(holdsString).Ref(), holdsString.Ref());
  RVObject holdsNumber([NSNumber numberWithInt:12]);
  EXPECT_EQ(Text(RVString(holdsNumber)), "12");

  NSString* object = [NSString stringWithFormat:@"%d", 5];
  RVString wrapped(object);
  EXPECT_EQ(wrapped.Ref(), object);
  EXPECT_EQ((id) static_cast<CFStringRef>(wrapped), object);
  RVString copy(wrapped);
  EXPECT_EQ(copy.Ref(), object);
  EXPECT_EQ(wrapped.RetainCount(), 3u);
}

TEST(String, SearchAndEquality) {
  RVString word("Banana");
  EXPECT_EQ(word.RangeOfStringWithOptionsInRange("a", 0, RVRange(2, 4)).Location(), 3u);

  // Not found: the platform's answer is passed on (cut to 32 bits).
  RVRange missing = word.RangeOfString("xyz");
  EXPECT_TRUE(missing.IsEmpty());
  EXPECT_EQ(missing.Location(), 0xFFFFFFFFu);

  RVString nil_(static_cast<const char*>(nullptr));
  EXPECT_TRUE(nil_.RangeOfString("a").IsEmpty());
  EXPECT_EQ(nil_.RangeOfString("a").Location(), 0u);

  EXPECT_FALSE(word == "banana");
  EXPECT_TRUE(word == reinterpret_cast<const wchar_t*>(u"Banana"));
  EXPECT_FALSE(word.IsEqualToString((RVId)nil));
  // Floating answers from nil are made 0 by the library, not left to chance.
  EXPECT_EQ(nil_.DoubleValue(), 0.0);
  EXPECT_EQ(nil_.FloatValue(), 0.0f);
}

TEST(String, SubstringsAndPaths) {
  RVString text("abcdef");
  EXPECT_EQ(Text(text.SubstringToIndex(2)), "ab");
  EXPECT_EQ(Text(text.SubstringFromIndex(4)), "ef");
  EXPECT_EQ(Text(text.SubstringWithRange(RVRange(1, 3))), "bcd");

  // Empty receivers and empty ranges never reach the platform.
  EXPECT_EQ(text.SubstringWithRange(RVRange(99, 0)).Ref(), kgRVInternalEmptyString.Ref());
  RVString nil_(static_cast<const char*>(nullptr));
  EXPECT_EQ(nil_.SubstringWithRange(RVRange(0, 5)).Ref(), kgRVInternalEmptyString.Ref());
  EXPECT_EQ(nil_.SubstringToIndex(1).Ref(), nil);

  // An empty receiver appends to "".
  EXPECT_EQ(Text(RVString().StringByAppendingPathComponent("component")), "component");
  EXPECT_EQ(Text(nil_.StringByAppendingPathComponent("component")), "component");
  EXPECT_EQ(nil_.LastPathComponent().Ref(), nil);
}

TEST(String, PercentEscapesAndEncodings) {
  EXPECT_EQ(Text(RVString("a b/c").StringByAddingPercentEscapes()), "a%20b/c");
  RVString query("a b&c=d/e");
  EXPECT_EQ(Text(query.StringByAddingPercentEscapesSpecifyingEscapeCharacters("")),
            "a%20b&c=d/e");
  EXPECT_EQ(Text(query.StringByAddingPercentEscapesSpecifyingEscapeCharacters("&=/")),
            "a%20b%26c%3Dd%2Fe");
  EXPECT_EQ(Text(RVString("\xC3\xA9<>").StringByAddingPercentEscapesSpecifyingEscapeCharacters("")),
            "%C3%A9%3C%3E");

  EXPECT_EQ(RVString::StringWithCStringUsingEncoding(static_cast<const char*>(nullptr), 0).Ref(),
            kgRVInternalEmptyString.Ref());
  EXPECT_EQ(Text(RVString::StringWithCStringUsingEncoding("\x8E", kRVStringEncodingMacOSRoman)),
            "\xC3\xA9");

  LogCapture log;
  RVString fallback = RVString::StringWithCStringUsingEncoding("h\xC3\xA9", 7);
  EXPECT_EQ(Text(fallback), "h\xC3\xA9");
  EXPECT_EQ(log.Count("Unhandled string encoding"), 1);
}

TEST(String, ConcatenationRendersTheRightSideAsAnObject) {
  RVString left("left");
  RVString joined = left + "-" + RVString("right");
  EXPECT_EQ(Text(joined), "left-right");
  EXPECT_EQ(Text(left), "left");  // operands are untouched

  RVString nil_(static_cast<const char*>(nullptr));
  nil_ += "after nil";
  EXPECT_EQ(Text(nil_), "after nil");

  RVString appended("n=");
  appended += (RVId)[NSNumber numberWithInt:7];
  EXPECT_EQ(Text(appended), "n=7");

  EXPECT_EQ(Text("pre" + RVString("fix")), "prefix");
  EXPECT_EQ(Text(@"ns" + RVString("string")), "nsstring");
  EXPECT_EQ(Text((CFStringRef) @"cf" + RVString("string")), "cfstring");

  // Whatever the operands, the text is what "%@%@" formats from a copy of
  // the left and the right: nil and objects render as the platform renders them.
  NSString* lone = [NSString stringWithFormat:@"a%Cb", (unichar)0xD800];
  NSString* long_ = [@"" stringByPaddingToLength:5000 withString:@"xy\u00e9" startingAtIndex:0];
  NSMutableString* mutable_ = [NSMutableString stringWithString:@"mut%d"];
  id operands[] = {@"100%", @"%@%d%", @"\uFEFFbom", @"\U0001F600", @"", lone, long_, mutable_,
                   [NSString stringWithFormat:@"n%Cul", (unichar)0],
                   [[[RVDescribedString alloc] init] autorelease], [NSNumber numberWithInt:5], nil};
  for (id a : operands) {
    for (id b : operands) {
      if (a != nil && ![a isKindOfClass:[NSString class]]) continue;  // refused by initWithString:
      NSString* copy = a != nil ? [NSString stringWithString:a] : @"";
      NSString* expected = [NSString stringWithFormat:@"%@%@", copy, b];
      RVString joined = RVString(static_cast<RVId>(a)) + RVString(static_cast<RVId>(b));
      EXPECT_TRUE([joined.Ref() isEqualToString:expected]) << Text(joined);
    }
  }
  // The left side is released before the right side is read.
  RVString itself("ab");
  itself += itself;
  EXPECT_EQ(Text(itself), "ab(null)");

  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  RVString owned = RVString("a") + RVString("b");
  [pool drain];
  EXPECT_EQ(owned.RetainCount(), 1u);
}

}  // namespace
