#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <Rovani/Rovani.h>

#include "support/TestSupport.h"

namespace {

TEST(StringExtensions, ReplaceAllIsLiteralLeftToRightAndNeverLoops) {
  auto replace = [](const char* text, NSString* target, NSString* replacement) {
    return Text(RVString(
        (RVId)[@(text) stringByReplacingOccurrencesOfStringMB:target withString:replacement]));
  };
  EXPECT_EQ(replace("banana", @"a", @"b"), "bbnbnb");
  EXPECT_EQ(replace("banana", @"an", @"anan"), "banana");  // replacement holds the target
  EXPECT_EQ(replace("banana", @"", @"x"), "banana");
  EXPECT_EQ(replace("banana", nil, @"x"), "banana");
  EXPECT_EQ(replace("abcabd", @"ab", nil), "cd");
  EXPECT_EQ(replace("aaaa", @"aa", @"a"), "aa");
  EXPECT_EQ(replace("aaa", @"aa", @"b"), "ba");

  NSMutableString* inPlace = [NSMutableString stringWithString:@"a.b.c"];
  [inPlace replaceOccurrencesOfStringMB:@"." withString:@"::"];
  EXPECT_EQ(Text(RVString((RVId)inPlace)), "a::b::c");

  EXPECT_EQ(Text(RVString((RVId)[NSString stringWithStringMB:@"xyx"
                                 replacingOccurrencesOfString:@"x"
                                                   withString:@"z"])),
            "zyz");
  EXPECT_EQ([NSString stringWithStringMB:nil replacingOccurrencesOfString:@"x" withString:@"z"],
            nil);

  // The handle's replace uses the same rules.
  EXPECT_EQ(Text(RVString("aaaa").StringByReplacingOccurrencesOfStringWithString("aa", "a")), "aa");
  EXPECT_EQ(Text(RVString("banana").StringByReplacingOccurrencesOfStringWithString("an", "anan")),
            "banana");
  EXPECT_EQ(RVString(static_cast<const char*>(nullptr))
                .StringByReplacingOccurrencesOfStringWithString("a", "b")
                .Ref(),
            nil);
}

TEST(StringExtensions, UnsearchableReceiverAnswersItselfUnchanged) {
  // GNUstep holds an unpaired surrogate in a formatted string but cannot
  // copy it (the copy is nil).
  NSString* broken = [NSString stringWithFormat:@"a%Cb", (unichar)0xD800];
  ASSERT_EQ([broken length], 3u);
  EXPECT_EQ([broken stringByReplacingOccurrencesOfStringMB:@"a" withString:@"x"], broken);
  EXPECT_EQ([broken stringByReplacingOccurrencesOfStringMB:@"zz" withString:@"x"], broken);
  EXPECT_EQ([NSString stringWithStringMB:broken replacingOccurrencesOfString:@"b" withString:@"c"],
            broken);
  RVString handle((RVId)broken);
  EXPECT_EQ(handle.StringByReplacingOccurrencesOfStringWithString("a", "x").Ref(), broken);
}

TEST(StringExtensions, LocaleIdentifierParts) {
  EXPECT_EQ(Text(RVString((RVId)[@"en_US" languageCode])), "en");
  EXPECT_EQ(Text(RVString((RVId)[@"en_US" countryCode])), "US");
}

}  // namespace
