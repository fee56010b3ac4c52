#import <Foundation/Foundation.h>

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include <Rovani/Rovani.h>

#include "support/TestSupport.h"

namespace {

RVData DataFromHex(const std::string& hex) {
  std::string bytes;
  for (size_t i = 0; i + 1 < hex.size(); i += 2)
    bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
  return DataFromText(bytes);
}

std::string BigEndian(uint64_t value, unsigned width) {
  std::string out(width, '\0');
  for (unsigned i = width; i-- > 0; value >>= 8) out[i] = static_cast<char>(value & 0xFF);
  return out;
}

// A binary list of the given encoded objects (object 0 is the root) with
// one-byte references and two-byte offsets; claimedCount, when given, is
// the object count the trailer claims.
RVData BinaryList(const std::vector<std::string>& objects, uint64_t claimedCount = 0) {
  std::string out = "bplist00";
  std::vector<size_t> offsets;
  for (const std::string& object : objects) {
    offsets.push_back(out.size());
    out += object;
  }
  size_t table = out.size();
  for (size_t offset : offsets) out += BigEndian(offset, 2);
  out += std::string(6, '\0') + '\x02' + '\x01';
  out += BigEndian(claimedCount ? claimedCount : objects.size(), 8) + BigEndian(0, 8) +
         BigEndian(table, 8);
  return DataFromText(out);
}

std::string ToString(const RVData& data) {
  return std::string(static_cast<const char*>(data.Bytes()), data.Length());
}

bool ReadsEmpty(const RVData& data) { return RVDictionary(data).Ref() == nil; }

// Through UTF-16 with an explicit byte order: keeps a leading U+FEFF.
NSString* U16(const std::u16string& text) {
  return [[[NSString alloc] initWithBytes:text.data() length:text.size() * 2
                                 encoding:NSUTF16LittleEndianStringEncoding] autorelease];
}

const std::string kXMLHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\">";

TEST(PropertyList, MalformedBinaryListsGiveTheEmptyDictionary) {
  // Once crashed GNUstep's binary parser.
  EXPECT_TRUE(ReadsEmpty(DataFromHex(
      "62706c6973743030d710111214116153516e537375620100000000000047534d757461e3ffffffffeaff"
      "00000051000000756e69780000003e3b223d404938525662637401010000e3ffffffffeaffff00fff70000"
      "00000051000000003e")));

  const std::string key = "\x51k";  // the ASCII string "k"
  const std::string dictKV = std::string("\xD1\x01\x02");
  RVDictionary good(BinaryList({dictKV, key, "\x51v"}));
  EXPECT_TRUE(good.StringForKey("k") == "v");

  // (Faults the public reader places are checked with their places below.)
  const std::vector<std::string> refused[] = {
      {dictKV, key, "\xA1\x00"},                                  // holds its root
      {dictKV, key, "\x5F\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF"},  // huge length
      {dictKV, key, "\x81\x00\x01"}, {dictKV, key, "\xC1\x01"},  // UID, set
      {dictKV, key, "\x52v"}};  // runs into the offset table
  for (const auto& objects : refused) EXPECT_TRUE(ReadsEmpty(BinaryList(objects)));
  EXPECT_TRUE(ReadsEmpty(BinaryList({dictKV, key, "\x51v"}, 1ull << 40)));  // count
  // A value read past the end of the data in place of the string's text.
  RVData whole = BinaryList({dictKV, key, "\x51v"});
  EXPECT_TRUE(ReadsEmpty(whole.SubdataWithRange(RVRange(0, whole.Length() - 1))));

  good.SetObjectForKey(RVString("w"), "other");  // what is read stays usable
  EXPECT_EQ(good.Count(), 2u);
}

TEST(PropertyList, OtherFormatsAndOversizedInputAreRefusedUnread) {
  // GNUstep's private serialisation format: would allocate gigabytes.
  // A date of NaN seconds (found by fuzzing: GNUstep's raise lost the date).
  EXPECT_TRUE(ReadsEmpty(DataFromHex(
      "62706c6973743030d70102030405060708090a0d0e0f1255636f756e74506e616d65566e6573746564526f"
      "6e55726174696f54746167735477686572100356526f76616e69d10b0c516b4200010933400400000000"
      "000051a2111061516233fffffffe0000000008171d22292c32373c3e3c214a5e4e5e005c5e4d57000000"
      "00000101000000000000001300000000000000000000000000000067")));
  EXPECT_TRUE(ReadsEmpty(DataFromHex("000505050505")));
  EXPECT_TRUE(ReadsEmpty(DataFromHex("0102ffffff51")));

  // Text beyond the bounds, or not of the grammar, never reaches GNUstep.
  std::string many = "{ a = (";
  for (int i = 0; i < (1 << 20); ++i) many += "x,";
  for (const std::string& text : {many + "); }", "{ a = <*I" + std::string(100000, '1') + ">; }",
                                  std::string("{ a = b; c = "), std::string("{ a = \"\xC3\x28\"; }")})
    EXPECT_TRUE(ReadsEmpty(DataFromText(text))) << text.substr(0, 12);

  // OpenStep text and strings tables still read, immutable to the leaves.
  RVDictionary text(DataFromText("{ a = (1, <0102>, \"q\"); b = { c = d; }; }"));
  EXPECT_EQ(text.ArrayForKey("a").Count(), 3u);
  EXPECT_TRUE(text.DictionaryForKey("b").StringForKey("c") == "d");
  EXPECT_FALSE([text.Ref() isKindOfClass:[NSMutableDictionary class]]);
  EXPECT_FALSE([text.DictionaryForKey("b").StringForKey("c").Ref() isKindOfClass:[NSMutableString class]]);
  EXPECT_TRUE(RVDictionary(DataFromText("a = b; \"c\" = \"d\";")).StringForKey("c") == "d");

  // A file larger than the bound is refused without being read.
  ScratchDir dir;
  std::string big = dir.File("big.plist");
  ASSERT_EQ(close(open(big.c_str(), O_CREAT | O_WRONLY, 0600)), 0);
  ASSERT_EQ(truncate(big.c_str(), (64 << 20) + 1), 0);
  EXPECT_TRUE(RVDictionary::DictionaryWithContentsOfFile(big.c_str()).Ref() == nil);
  EXPECT_TRUE(RVDictionary::DictionaryWithContentsOfFile(dir.Path().c_str()).Ref() == nil);
}

TEST(PropertyList, XMLReadsCompletelyOrNotAtAll) {
  // Cut just after "<" or "</", and dictionary bodies whose UTF-16 length
  // cuts their document there.
  std::string whole = kXMLHead + "<dict><key>a</key><string>b</string></dict></plist>";
  EXPECT_TRUE(ReadsEmpty(DataFromText(whole.substr(0, whole.rfind("</dict>") + 1))));
  EXPECT_TRUE(ReadsEmpty(DataFromText(whole.substr(0, whole.rfind("</dict>") + 2))));
  std::string accents;
  for (int i = 0; i < 6; ++i) accents += "\xC3\xA9";
  EXPECT_TRUE(ReadsEmpty(DataFromText("<key>a</key><string>" + accents + "</string>")));
  EXPECT_TRUE(ReadsEmpty(DataFromText("<key>a</key><string>" + accents + "\xC3\xA9</string>")));

  // Shape.
  EXPECT_TRUE(ReadsEmpty(DataFromText(kXMLHead + "<dict><string>a</string></dict></plist>")));
  EXPECT_TRUE(ReadsEmpty(DataFromText(kXMLHead + "<dict/><dict/></plist>")));
}

// Each kind of fault in each format, with the place and reason the public
// readers give.
TEST(PropertyList, ErrorsSayWhereAndWhy) {
  struct Case {
    std::string bytes;
    RVDocumentFormat format;
    const char* description;
  };
  std::string deepJson(300, '['), deepXML;
  for (int i = 0; i < 300; ++i) deepXML += "<array>";
  const RVDocumentFormat xml = RVDocumentFormat::kXMLPropertyList,
                        bin = RVDocumentFormat::kBinaryPropertyList,
                        openStep = RVDocumentFormat::kOpenStepPropertyList;
  const Case cases[] = {
      {"<plist><dict><key>a</key></dict></plist>", xml, "1:26: expected a value after <key>"},
      {"<plist>\n  <dict><key>a</key><integer>12x</integer></dict></plist>", xml,
       "2:21: not an integer of at most 64 bits"},
      {"<plist><string>\xFF</string></plist>", xml, "1:16: a byte that is not UTF-8"},
      {"<plist><string>&bogus;</string></plist>", xml, "1:16: an unknown entity reference"},
      {"<plist>\r\n<array><true/>", xml, "2:1: <array> is never closed"},
      {"<plist>" + deepXML, xml, "1:1800: containers nested deeper than 256 levels"},
      {ToString(BinaryList({std::string(1, '\0')})), bin,
       "byte 8: a null or fill object, which a property list cannot hold"},
      {ToString(BinaryList({"\xA1\x05"})), bin, "byte 9: a reference to an object that does not exist"},
      {ToString(BinaryList({std::string("\xA1\x00", 2)})), bin, "byte 8: an object that contains itself"},
      {ToString(BinaryList({"\xD1\x01\x02", "\x10\x05", "\x51v"})), bin,
       "byte 11: a dictionary key that is not a string"},
      {ToString(BinaryList({"\x14" + std::string(1, '\x01') + std::string(15, '\0')})), bin,
       "byte 8: an integer beyond 64 bits"},
      {"bplist00" + std::string(12, '\0'), bin, "byte 20: too short for a binary property list"},
      {"{ a = (1, 2; }", openStep, "1:12: expected ',' or ')'"},
      {"{\n a = \"x; }", openStep, "2:6: a string that is never closed"},
  };
  for (const Case& c : cases) {
    RVFormatError error;
    EXPECT_EQ(RVPropertyList::Read(c.bytes, &error), nullptr) << c.description;
    EXPECT_EQ(error.Description(), c.description);
    EXPECT_EQ(error.format, c.format) << c.description;
  }

  const std::pair<std::string, const char*> json[] = {
      {"{\"a\": 1,\n  \"b\" }", "2:7: Missing ':' after object member name"},
      {"{\"a\": [1, 18446744073709551616]}", "1:11: a.1: an integer beyond 64 bits"},
      {"{\"k.\\\\\": \"\xC3\"}", "1:10: k\\.\\\\: text that is not UTF-8"},
      {"{} x", "1:4: text after the end of the value"},
      {"{\"a\": [00]}", "1:8: a.0: not a number as JSON writes one"},
      {deepJson, "1:257: containers nested deeper than 256 levels"},
      {"", "1:1: Syntax error: value, object or array expected."},
  };
  for (const auto& c : json) {
    RVFormatError error;
    EXPECT_EQ(RVJsonDocument::Parse(c.first, &error), nullptr) << c.second;
    EXPECT_EQ(error.Description(), c.second);
  }

  // A refused value names the format written; nothing is written.
  RVFormatError error;
  EXPECT_EQ(RVPropertyList::Write(RVObject(), RVDocumentFormat::kXMLPropertyList, &error), "");
  EXPECT_TRUE(error.IsError());
  EXPECT_EQ(error.format, RVDocumentFormat::kXMLPropertyList);
}

// JSON comes into a property list exactly, and the formats are told apart.
TEST(PropertyList, JsonAndPropertyListsAgreeExactly) {
  RVAutoreleasePool pool;
  RVFormatError error;
  std::unique_ptr<RVObject> root = RVJsonDocument::Parse(
      "[18446744073709551615, -9223372036854775808, 2.5, true, null, [], {},"
      " {\"\xEF\xBB\xBFk\": \"\xEF\xBB\xBFv\\u0000\"}] // done",
      &error);
  ASSERT_NE(root, nullptr) << error.Description();
  NSArray* list = root->Ref();
  using Kind = RVPropertyList::Kind;
  const Kind kinds[] = {Kind::kUnsignedInteger, Kind::kInteger, Kind::kReal, Kind::kBoolean,
                        Kind::kNull, Kind::kArray, Kind::kDictionary, Kind::kDictionary};
  ASSERT_EQ([list count], 8u);
  for (NSUInteger i = 0; i < 8; ++i) {
    std::unique_ptr<RVObject> item(RVObject::Create([list objectAtIndex:i]));
    EXPECT_EQ(RVPropertyList::KindOf(*item), kinds[i]) << i;
  }
  EXPECT_EQ([[list objectAtIndex:0] unsignedLongLongValue], UINT64_MAX);
  EXPECT_EQ([[list objectAtIndex:1] longLongValue], INT64_MIN);
  NSDictionary* marked = [list objectAtIndex:7];
  NSString* key = [[marked allKeys] objectAtIndex:0];
  NSString* value = [marked objectForKey:key];
  EXPECT_TRUE([key isEqual:U16(u"\uFEFFk")]) << [key length];
  EXPECT_TRUE([value isEqual:U16(std::u16string(u"\uFEFFv\0", 3))]) << [value length];

  // Through XML and back: every integer and mark as it was.
  NSArray* plain = [list subarrayWithRange:NSMakeRange(0, 4)];
  std::string xml = RVPropertyList::Write(RVArray(plain), RVDocumentFormat::kXMLPropertyList, &error);
  ASSERT_FALSE(error.IsError()) << error.Description();
  std::unique_ptr<RVObject> back = RVPropertyList::Read(xml, &error);
  ASSERT_NE(back, nullptr) << error.Description();
  EXPECT_EQ(error.format, RVDocumentFormat::kXMLPropertyList);
  EXPECT_TRUE([back->Ref() isEqual:plain]);
  EXPECT_EQ([[back->Ref() objectAtIndex:0] unsignedLongLongValue], UINT64_MAX);
  EXPECT_NE(RVPropertyList::Read("{ a = (1, \"x\"); }", &error), nullptr);
  EXPECT_EQ(error.format, RVDocumentFormat::kOpenStepPropertyList);
}

// One nesting limit: 256 levels of containers read in every text format,
// 257 are refused.
TEST(PropertyList, EveryFormatNestsTheSameDepth) {
  RVAutoreleasePool pool;
  for (size_t levels : {256, 257}) {
    std::string xml = "<plist>", openStep, json;
    for (size_t i = 0; i < levels; ++i) xml += "<array>", openStep += "(", json += "[";
    for (size_t i = 0; i < levels; ++i) xml += "</array>", openStep += ")", json += "]";
    xml += "</plist>";
    EXPECT_EQ(RVPropertyList::Read(xml) != nullptr, levels == 256) << levels;
    EXPECT_EQ(RVPropertyList::Read(openStep) != nullptr, levels == 256) << levels;
    EXPECT_EQ(RVJsonDocument::Parse(json) != nullptr, levels == 256) << levels;
  }
}

}  // namespace
