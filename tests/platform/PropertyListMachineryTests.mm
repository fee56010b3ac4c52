// The property-list writer and readers, called directly.
#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <string>

#include "Platform/PropertyLists/RVBinaryPropertyList.h"
#include "Platform/PropertyLists/RVBinaryPropertyListWriter.h"
#include "Platform/PropertyLists/RVPropertyList.h"
#include "Platform/PropertyLists/RVXMLPropertyListWriter.h"

// Subclasses of the class clusters, as private collection and string
// classes are: written like the platform's own.
@interface RVTestString : NSString
@end
@implementation RVTestString
- (NSUInteger)length { return 3; }
- (unichar)characterAtIndex:(NSUInteger)index { return u"a<\u00e9"[index]; }
@end

// Holds such a string, and a dictionary keyed by one.
@interface RVTestArray : NSArray
@end
@implementation RVTestArray
- (NSUInteger)count { return 2; }
- (id)objectAtIndex:(NSUInteger)index {
  id text = [[[RVTestString alloc] init] autorelease];
  return index == 0 ? text : @{text : @1};
}
@end

namespace {

// Through UTF-16 with an explicit byte order: keeps a leading U+FEFF.
NSString* U16(std::u16string text) {
  return [[[NSString alloc] initWithBytes:text.data() length:text.size() * 2
                                 encoding:NSUTF16LittleEndianStringEncoding] autorelease];
}

std::string Written(id list) {
  std::string text;
  return RVXMLPropertyListWrite(list, &text) ? text : "<refused>";
}

id Read(const std::string& text) { return RVPropertyListFromBytes(text.data(), text.size()); }
NSDate* At(double seconds) { return [NSDate dateWithTimeIntervalSinceReferenceDate:seconds]; }

std::string Hex(NSData* data) {
  std::string out;
  for (NSUInteger i = 0; i < [data length]; ++i)
    out += "0123456789abcdef"[static_cast<const unsigned char*>([data bytes])[i] >> 4],
        out += "0123456789abcdef"[static_cast<const unsigned char*>([data bytes])[i] & 15];
  return out;
}

id ReadBinary(NSData* data) {
  return RVBinaryPropertyListRead(static_cast<const unsigned char*>([data bytes]), [data length]);
}

// A binary list's trailer: widths of an offset and a reference, object count.
std::string Trailer(NSData* data) { return Hex(data).substr(Hex(data).size() - 52, 20); }

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
  };
  std::string text = Written(list);
  for (const char* part :
       {"<key>\xEF\xBB\xBF</key>\n    <string>\xEF\xBB\xBF\xEF\xBB\xBF" "bom</string>",
        "<key>\xF0\x9F\x98\x80</key>\n    <string>a\xF0\x9F\x98\x80" "b</string>",
        "<string>one&#13;two&#13;\n</string>", "<string>\\U0041</string>",
        "<real>1.7976931348623157e+308</real>", "<real>123456789.12345679</real>",
        "<real>nan</real>", "<real>inf</real>", "<real>-inf</real>", "<real>5e-324</real>",
        "<date>2000-12-31T23:59:59Z</date>", "<date>2001-01-01T00:00:00Z</date>",
        "<date>0001-01-01T00:00:00Z</date>", "<date>9999-12-31T23:59:59Z</date>"})
    EXPECT_NE(text.find(part), std::string::npos) << part;
}

TEST(PropertyListWriter, WritesSubclassesOfTheClassClustersLikeTheirOwn) {
  std::string written = Written(@{@"k" : [[[RVTestArray alloc] init] autorelease]});
  EXPECT_NE(written.find("<string>a&lt;\xC3\xA9</string>"), std::string::npos) << written;
  EXPECT_EQ(written, Written(@{@"k" : @[ @"a<\u00e9", @{@"a<\u00e9" : @1} ]}));
}

TEST(PropertyListWriters, RefuseTheSameListsWholeNamingTheValue) {
  id nested = @{};
  for (int i = 0; i < 300; ++i) nested = @{@"k" : nested};
  std::string deepPath = "k";
  for (int i = 1; i < 256; ++i) deepPath += ".k";
  // GNUstep makes no string with an unpaired surrogate, but cuts one out
  // of a pair.
  NSString* pair = U16(u"x\U0001F600y");
  NSString *high = [pair substringWithRange:NSMakeRange(0, 2)], *low = [pair substringWithRange:NSMakeRange(2, 2)];
  const std::string cannot = ", which a property list cannot hold";
  struct {
    id list;
    std::string keyPath, message;
  } refused[] = {
    {@{@"a" : @[ @1, [NSNull null] ]}, "a.1", "a null value"},
    {@{@"a.b\\" : @{@1 : @"non-string key"}}, "a\\.b\\\\", "a non-string key"},
    {@{@"k" : @"\x01"}, "k", "a string with the control character U+0001" + cannot},
    {@{@"\x1F" : @"k"}, "\x1F", "a key with the control character U+001F" + cannot},
    {@{@"k" : high}, "k", "a string with an unpaired surrogate U+D83D" + cannot},
    {@{low : @"k"}, "\xEF\xBF\xBDy", "a key with an unpaired surrogate U+DE00" + cannot},
    {@{@"k" : @[ @"", [pair substringToIndex:2] ]}, "k.1", "a string with an unpaired surrogate U+D83D" + cannot},
    {@{@"k" : U16(u"ok\xFFFE")}, "k", "a string with the character U+FFFE" + cannot},
    {@[ @{@"k" : At(-63113904000.5)} ], "0.k", "a date outside the years 1 to 9999"},
    {@{@"k" : At(252423993600.0)}, "k", "a date outside the years 1 to 9999"},  // 10000-01-01
    {@{@"k" : [NSDecimalNumber decimalNumberWithString:@"0.1"]}, "k", "the decimal number 0.1, which no real holds exactly"},
    {@[ [NSDecimalNumber decimalNumberWithString:@"0.3"] ], "0", "the decimal number 0.3, which no real holds exactly"},
    {@{@"k" : [[[NSObject alloc] init] autorelease]}, "k", "a value of class NSObject" + cannot},
    {nested, deepPath, "containers nested deeper than 256"},
    {nil, "", "no list (nil)"},
  };
  for (const auto& c : refused) {
    RVFormatFault xml, binary;
    std::string text;
    EXPECT_FALSE(RVXMLPropertyListWrite(c.list, &text, &xml)) << c.message;
    EXPECT_EQ(RVBinaryPropertyListData(c.list, &binary), nil) << c.message;
    for (const RVFormatFault& fault : {xml, binary}) {
      EXPECT_EQ(fault.message, c.message);
      EXPECT_EQ(fault.keyPath, c.keyPath) << c.message;
      EXPECT_TRUE(fault.refusedValue);
    }
  }
  RVFormatFault fault;
  EXPECT_EQ(RVBinaryPropertyListData(@[ [NSValue valueWithRange:NSMakeRange(1, 2)] ], &fault), nil);
  EXPECT_EQ(fault.keyPath, "0");
  EXPECT_EQ(RVPropertyListXMLData(@{@"k" : [NSNull null]}), nil);
}

TEST(PropertyListWriters, WriteADecimalNumberOnlyWhenARealHoldsItExactly) {
  for (NSString* exact : @[ @"2.5", @"-0.0078125", @"1e20", @"18446744073709551616", @"0" ]) {
    NSDecimalNumber* decimal = [NSDecimalNumber decimalNumberWithString:exact];
    double value = [decimal doubleValue];
    EXPECT_EQ(Written(decimal), Written([NSNumber numberWithDouble:value])) << [exact UTF8String];
    EXPECT_EQ([ReadBinary(RVBinaryPropertyListData(decimal)) doubleValue], value);
  }
  for (NSString* rounded : @[ @"9007199254740993", @"1e-30" ]) {
    NSDecimalNumber* decimal = [NSDecimalNumber decimalNumberWithString:rounded];
    EXPECT_TRUE(Written(decimal) == "<refused>" && !RVBinaryPropertyListData(decimal)) << [rounded UTF8String];
  }
}

TEST(BinaryPropertyListWriter, WritesEachScalarInItsFewestBytes) {
  unsigned char bytes[20] = {1, 2, 3};
  struct {
    id value;
    std::string hex;
  } scalars[] = {
    {@0, "1000"}, {@255, "10ff"}, {@256, "110100"}, {@65535, "11ffff"}, {@65536, "1200010000"},
    {[NSNumber numberWithUnsignedInt:UINT32_MAX], "12ffffffff"},
    {[NSNumber numberWithLongLong:1LL << 32], "130000000100000000"},
    {[NSNumber numberWithLongLong:INT64_MAX], "137fffffffffffffff"},
    {@-1, "13ffffffffffffffff"}, {[NSNumber numberWithLongLong:INT64_MIN], "138000000000000000"},
    {[NSNumber numberWithUnsignedLongLong:1ULL << 63], "1400000000000000008000000000000000"},
    {[NSNumber numberWithUnsignedLongLong:UINT64_MAX], "140000000000000000ffffffffffffffff"},
    {@0.5, "233fe0000000000000"}, {[NSNumber numberWithFloat:0.1f], "233fb99999a0000000"},
    {@-0.0, "238000000000000000"}, {@(INFINITY), "237ff0000000000000"},
    {@(-INFINITY), "23fff0000000000000"}, {@DBL_TRUE_MIN, "230000000000000001"},
    {[NSNumber numberWithBool:YES], "09"}, {[NSNumber numberWithBool:NO], "08"},
    {At(-0.5), "33bfe0000000000000"}, {At(-63113904000.0), "33c22d63c37f000000"},
    {@"", "50"}, {@"abc", "53616263"}, {@"0123456789abcde", "5f100f303132333435363738396162636465"},
    {U16(u"\uFEFF\u00e9"), "62feff00e9"}, {U16(u"\U0001F600"), "62d83dde00"},
    {[NSData dataWithBytes:bytes length:20], "4f1014010203" + std::string(34, '0')},
  };
  for (const auto& c : scalars) {
    NSData* data = RVBinaryPropertyListData(c.value);
    ASSERT_NE(data, nil) << c.hex;
    std::string hex = Hex(data);
    EXPECT_EQ(hex.substr(0, 16), "62706c6973743030");
    EXPECT_EQ(hex.substr(16, hex.size() - 16 - 66), c.hex);
    EXPECT_EQ(Trailer(data), "0101" "0000000000000001");
    id back = ReadBinary(data);
    EXPECT_TRUE([back isEqual:c.value]) << c.hex;
    if ([c.value isKindOfClass:[NSNumber class]])
      EXPECT_EQ([back unsignedLongLongValue], [c.value unsignedLongLongValue]) << c.hex;
  }
  EXPECT_TRUE(std::isnan([ReadBinary(RVBinaryPropertyListData(@(NAN))) doubleValue]));
}

TEST(BinaryPropertyListWriter, WritesEqualScalarsOnceAndReferencesInTheFewestBytes) {
  NSArray* list = @[ @"x", @"x", @1, @1, @1.0, [NSNumber numberWithBool:YES],
                     [NSNumber numberWithBool:YES], @{@"x" : @"x", @"y" : @[]}, At(0), At(0) ];
  NSData* data = RVBinaryPropertyListData(list);
  // The array, "x", 1, 1.0, true, the dictionary, "y", the empty array, the date.
  EXPECT_EQ(Trailer(data), "0101" "0000000000000009");
  EXPECT_TRUE([ReadBinary(data) isEqual:list]);

  NSMutableArray* many = [NSMutableArray array];
  for (int i = 0; i < 300; ++i) [many addObject:@(i)];
  EXPECT_EQ(Trailer(RVBinaryPropertyListData(@[ many ])), "0202" "000000000000012e");
  [many removeObjectsInRange:NSMakeRange(200, 100)];
  EXPECT_EQ(Trailer(RVBinaryPropertyListData(many)), "0201" "00000000000000c9");
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
  for (size_t at = 0; (at = text.find("<key>", at)) != std::string::npos; at += 5)
    order += text.substr(at, text.find("</key>", at) + 6 - at);
  EXPECT_EQ(order, expected);

  // Keys that compare the same come in code-unit order.
  NSString *composed = @"\u00e9", *decomposed = U16(u"e\u0301");
  ASSERT_EQ([composed compare:decomposed], NSOrderedSame);
  text = Written(@{composed : @"1", decomposed : @"2"});
  EXPECT_LT(text.find("e\xCC\x81"), text.find("\xC3\xA9"));
}

TEST(PropertyListReaders, ReadEverySpellingOfARealAndRefuseIntegersBeyond64Bits) {
  NSArray* values = Read(kHead + "<array><real>+infinity</real><real>-infinity</real>"
                                 "<real>inf</real><real>+1.5</real><real>nan</real></array></plist>");
  EXPECT_TRUE([[values subarrayWithRange:NSMakeRange(0, 4)] isEqual:(@[ @(INFINITY), @(-INFINITY), @(INFINITY), @1.5 ])]);
  EXPECT_TRUE([values count] == 5 && std::isnan([[values lastObject] doubleValue]));
  for (const char* beyond : {"18446744073709551616", "-9223372036854775809"})
    EXPECT_EQ(Read(kHead + "<integer>" + beyond + "</integer></plist>"), nil) << beyond;
}

}  // namespace
