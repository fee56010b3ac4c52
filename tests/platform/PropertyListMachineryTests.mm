// The property-list writer and readers, called directly.
#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <string>

#include "Platform/PropertyLists/RVPropertyList.h"
#include "Platform/PropertyLists/RVXMLPropertyListWriter.h"

// Subclasses of the class clusters, as private collection and string
// classes are: written like the platform's own.
@interface RVTestArray : NSArray {
  NSArray* items_;
}
@end
@implementation RVTestArray
- (id)initWithItems:(NSArray*)items {
  if ((self = [super init]) != nil) items_ = [items retain];
  return self;
}
- (void)dealloc {
  [items_ release];
  [super dealloc];
}
- (NSUInteger)count { return [items_ count]; }
- (id)objectAtIndex:(NSUInteger)index { return [items_ objectAtIndex:index]; }
@end

@interface RVTestString : NSString
@end
@implementation RVTestString
- (NSUInteger)length { return 3; }
- (unichar)characterAtIndex:(NSUInteger)index { return u"a<\u00e9"[index]; }
@end

namespace {

NSString* U16(std::u16string text) {
  // Through UTF-16 with an explicit byte order: keeps a leading U+FEFF.
  return [[[NSString alloc] initWithBytes:text.data()
                                   length:text.size() * 2
                                 encoding:NSUTF16LittleEndianStringEncoding] autorelease];
}

std::string Written(id list) {
  std::string text;
  return RVXMLPropertyListWrite(list, &text) ? text : "<refused>";
}

id Read(const std::string& text) { return RVPropertyListFromBytes(text.data(), text.size()); }

NSDate* At(double seconds) { return [NSDate dateWithTimeIntervalSinceReferenceDate:seconds]; }

const std::string kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST "
    "1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n";

TEST(PropertyListWriter, KeepsGNUstepsBytesForEveryValueItWroteRight) {
  unsigned char bytes[100];
  for (int i = 0; i < 100; ++i) bytes[i] = static_cast<unsigned char>(i * 7);
  NSDictionary* list = @{
    @"b" : @"text with <markup> & \"quotes\" 'here'\tand\nlines",
    @"B" : @[ @0, @-1, [NSNumber numberWithLongLong:INT64_MIN],
              [NSNumber numberWithUnsignedLongLong:UINT64_MAX], [NSNumber numberWithInt:7] ],
    @"\u00e9" : @[ @0.5, @-0.0, @1e21, @1e-7, @100.0, @0.1, [NSNumber numberWithFloat:0.25f] ],
    @"a10" : @[ At(0), At(-86400 * 365.0), At(1e9) ],
    @"a9" : @[ [NSData dataWithBytes:bytes length:100], [NSData dataWithBytes:bytes length:1],
               [NSData data] ],
    @"\u4e16" : @{@"deeper" : @[ @{@"deepest" : @[ [NSNumber numberWithBool:YES], [NSNumber numberWithBool:NO], @"" ]}, @{}, @[] ]},
    @"" : @"empty key",
    @"\u00e4" : @"sorted among the a's by its base letter",
  };
  NSData* theirs = [NSPropertyListSerialization dataFromPropertyList:list
                                                              format:NSPropertyListXMLFormat_v1_0
                                                    errorDescription:NULL];
  ASSERT_NE(theirs, nil);
  EXPECT_EQ(Written(list), std::string(static_cast<const char*>([theirs bytes]), [theirs length]));
  EXPECT_EQ(Written(@"root"), kHead + "<string>root</string>\n</plist>");
}

TEST(PropertyListWriter, WritesExactlyWhatGNUstepChanged) {
  NSDictionary* list = @{
    U16(u"\uFEFF") : U16(u"\uFEFF\uFEFFbom"),
    U16(u"\U0001F600") : U16(u"a\U0001F600b"),
    @"cr" : @"one\rtwo\r\n",
    @"escaped" : @"\\U0041",
    @"reals" : @[ @DBL_MAX, @123456789.12345679, @(NAN), @(INFINITY), @(-INFINITY), @DBL_TRUE_MIN ],
    @"dates" : @[ At(-0.5), At(0.999), At(-63113904000.0), At(252423993599.9) ],
    @"booleans" : @[ [NSNumber numberWithBool:YES], [NSNumber numberWithBool:NO] ],
  };
  std::string text = Written(list);
  for (const char* part :
       {"<key>\xEF\xBB\xBF</key>\n    <string>\xEF\xBB\xBF\xEF\xBB\xBF" "bom</string>",
        "<key>\xF0\x9F\x98\x80</key>\n    <string>a\xF0\x9F\x98\x80" "b</string>",
        "<string>one&#13;two&#13;\n</string>", "<string>\\U0041</string>",
        "<real>1.7976931348623157e+308</real>", "<real>123456789.12345679</real>",
        "<real>nan</real>", "<real>inf</real>", "<real>-inf</real>", "<real>5e-324</real>",
        "<date>2000-12-31T23:59:59Z</date>", "<date>2001-01-01T00:00:00Z</date>",
        "<date>0001-01-01T00:00:00Z</date>", "<date>9999-12-31T23:59:59Z</date>",
        "<true/>\n\t<false/>"})
    EXPECT_NE(text.find(part), std::string::npos) << part;

}

TEST(PropertyListWriter, WritesSubclassesOfTheClassClustersLikeTheirOwn) {
  RVTestString* text = [[[RVTestString alloc] init] autorelease];
  RVTestArray* array =
      [[[RVTestArray alloc] initWithItems:@[ text, @{text : @1} ]] autorelease];
  std::string written = Written(@{@"k" : array});
  EXPECT_NE(written.find("<string>a&lt;\xC3\xA9</string>"), std::string::npos) << written;
  EXPECT_EQ(written, Written(@{@"k" : @[ @"a<\u00e9", @{@"a<\u00e9" : @1} ]}));
}

TEST(PropertyListWriter, RefusesWholeWhatTheFormatCannotHold) {
  NSMutableDictionary* nested = [NSMutableDictionary dictionary];
  NSMutableDictionary* inner = nested;
  for (int i = 0; i < 300; ++i) {
    NSMutableDictionary* next = [NSMutableDictionary dictionary];
    [inner setObject:next forKey:@"k"];
    inner = next;
  }
  // GNUstep makes no string with an unpaired surrogate, but cuts one out
  // of a pair.
  NSString* pair = U16(u"x\U0001F600y");
  NSString* high = [pair substringWithRange:NSMakeRange(0, 2)];
  NSString* low = [pair substringWithRange:NSMakeRange(2, 2)];
  NSArray* refused = @[
    @{@"k" : [NSNull null]}, @{@1 : @"non-string key"}, @{@"k" : @"\x01"},
    @{@"\x1F" : @"k"}, @{@"k" : high}, @{low : @"k"}, @{@"k" : @[ [pair substringToIndex:2] ]},
    @{@"k" : U16(u"\xFFFE")},
    @{@"k" : At(-63113904000.5)},  // 0000-12-31T23:59:59Z
    @{@"k" : At(252423993600.0)},  // 10000-01-01
    @{@"k" : [NSValue valueWithRange:NSMakeRange(1, 2)]},
    @{@"k" : [[[NSObject alloc] init] autorelease]}, nested
  ];
  for (NSUInteger i = 0; i < [refused count]; ++i)
    EXPECT_EQ(Written([refused objectAtIndex:i]), "<refused>") << "list " << i;
  EXPECT_EQ(Written(nil), "<refused>");
  EXPECT_EQ(RVPropertyListXMLData(@{@"k" : [NSNull null]}), nil);
}

TEST(PropertyListWriter, SortsKeysAsGNUstepCompares) {
  NSArray* keys = @[
    @"b", @"B", @"a", @"A", @"", @"_", @"\u00e9", @"z", @"Z1", @"a10", @"a9", @"\u00e4", @"e",
    @"f", @"\u00c5ngstr\u00f6m", @"Zebra", U16(u"\U0001F600"), U16(u"\U00010400"), @"\uFFFD",
    @"\u4e16", @"1", @"-", @"~", @"\u00df", @"ss"
  ];
  NSMutableDictionary* list = [NSMutableDictionary dictionary];
  for (NSString* key in keys) [list setObject:@"" forKey:key];
  std::string expected;
  for (NSString* key in [keys sortedArrayUsingSelector:@selector(compare:)])
    expected += std::string("<key>") + [key UTF8String] + "</key>";
  std::string text = Written(list), order;
  for (size_t at = text.find("<key>"); at != std::string::npos; at = text.find("<key>", at + 1))
    order += text.substr(at, text.find("</key>", at) + 6 - at);
  EXPECT_EQ(order, expected);

  // Keys that compare the same come in code-unit order.
  NSString* composed = @"\u00e9";
  NSString* decomposed = U16(u"e\u0301");
  ASSERT_EQ([composed compare:decomposed], NSOrderedSame);
  text = Written(@{composed : @"1", decomposed : @"2"});
  EXPECT_LT(text.find("e\xCC\x81"), text.find("\xC3\xA9"));
}

TEST(PropertyListReaders, ReadEverySpellingOfARealAndRefuseIntegersBeyond64Bits) {
  NSArray* values = Read(kHead + "<array><real>+infinity</real><real>-infinity</real>"
                                 "<real>inf</real><real>nan</real><real>+1.5</real></array></plist>");
  ASSERT_EQ([values count], 5u);
  EXPECT_EQ([[values objectAtIndex:0] doubleValue], INFINITY);
  EXPECT_EQ([[values objectAtIndex:1] doubleValue], -INFINITY);
  EXPECT_EQ([[values objectAtIndex:2] doubleValue], INFINITY);
  EXPECT_TRUE(std::isnan([[values objectAtIndex:3] doubleValue]));
  EXPECT_EQ([[values objectAtIndex:4] doubleValue], 1.5);

  for (const char* beyond : {"18446744073709551616", "-9223372036854775809"})
    EXPECT_EQ(Read(kHead + "<integer>" + beyond + "</integer></plist>"), nil) << beyond;
}

}  // namespace
