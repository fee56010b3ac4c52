#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <Rovani/Rovani.h>

#include "support/LogCapture.h"
#include "support/TestSupport.h"

namespace {

std::vector<unsigned char> Bytes(const RVData& data) {
  const unsigned char* start = static_cast<const unsigned char*>(data.Bytes());
  return std::vector<unsigned char>(start, start + data.Length());
}

TEST(Data, StringsToBytesWithTheRightTerminatorsAndBack) {
  EXPECT_EQ(RVData(RVString("ab")).Length(), 2u);
  EXPECT_EQ(RVString("ab").DataContainingUTF8CString().Length(), 3u);
  EXPECT_EQ(Bytes(RVString("ab").DataContainingUnicodeCString()),
            (std::vector<unsigned char>{0xFF, 0xFE, 'a', 0, 'b', 0, 0, 0}));
  EXPECT_EQ(Bytes(RVString("\xC3\xA9").DataContainingMacOSRomanCString()),
            (std::vector<unsigned char>{0x8E, 0}));
  EXPECT_EQ(Bytes(RVString("\xE2\x82\xAC").DataContainingWindowsLatin1CString()),
            (std::vector<unsigned char>{0x80, 0}));
  // Lossy: a character ASCII cannot hold still gives a byte.
  EXPECT_EQ(RVString("\xC3\xA9").DataContainingStringUsingEncoding(kRVStringEncodingASCII).Length(),
            1u);

  LogCapture log;
  // An empty string stops before its code is looked at: nothing is logged.
  for (unsigned int code = 0; code <= 7; ++code)
    EXPECT_TRUE(RVData::DataWithStringUsingEncoding(RVString(), code).IsEmpty());
  EXPECT_TRUE(RVData(RVString()).IsEmpty());
  EXPECT_TRUE(RVData(RVString(static_cast<const char*>(nullptr))).IsEmpty());
  // Bytes that are no UTF-8 make a nil string, which gives empty data.
  EXPECT_TRUE(RVData(RVString::StringWithCStringUsingEncoding("caf\x8e", 0)).IsEmpty());
  EXPECT_TRUE(log.Lines().empty());

  RVData fallback = RVData::DataWithStringUsingEncoding("h\xC3\xA9", 7);
  EXPECT_EQ(log.Count("Unhandled string encoding"), 1);
  EXPECT_EQ(fallback.Length(), 3u);

  // Bytes back to strings.
  EXPECT_TRUE(RVString(RVData::DataWithBytes("ab\0", 3)) == "ab");
  RVString whole(RVData::DataWithBytes("a\0b", 3));
  EXPECT_EQ(whole.Length(), 3u);
  // Back to bytes, the text is cut at its U+0000.
  EXPECT_EQ(RVData(whole).Length(), 1u);
  EXPECT_TRUE(RVString(RVData()).IsEmpty());
}

TEST(Data, SlicesAppendsAndTheOneMutableHolder) {
  RVData data = RVData::DataWithBytes("0123456789", 10);
  EXPECT_EQ(std::string(data.SubdataWithRange(RVRange(2, 3)).CharPointer(), 3), "234");
  char buffer[4] = {0};
  data.GetBytesWithRange(buffer, RVRange(7, 3));
  EXPECT_STREQ(buffer, "789");
  data.GetBytesWithLength(buffer, 2);
  EXPECT_EQ(buffer[1], '1');

  RVData mutableData = RVData::DataWithLength(4);
  ASSERT_TRUE([mutableData.Ref() isKindOfClass:[NSMutableData class]]);
  static_cast<char*>(mutableData.MutableBytes())[0] = 'x';
  EXPECT_EQ(mutableData.CharPointer()[0], 'x');
  mutableData.AppendString("yz");
  EXPECT_FALSE([mutableData.Ref() isKindOfClass:[NSMutableData class]]);
  EXPECT_EQ(mutableData.Length(), 6u);

  RVData empty;
  empty.AppendString("h\xC3\xA9");
  EXPECT_EQ(Bytes(empty), (std::vector<unsigned char>{'h', 0xC3, 0xA9}));
  empty.AppendData(RVData(RVString("!")));
  EXPECT_EQ(empty.Length(), 4u);
}

TEST(Data, DictionariesAndOwnership) {
  RVDictionary dictionary;
  dictionary.SetObjectForKey(RVString("v"), "k");
  RVData xml(dictionary);
  EXPECT_FALSE([xml.Ref() isKindOfClass:[NSMutableData class]]);
  RVData same;
  same.InitWithDictionary(dictionary);
  EXPECT_TRUE(same == xml.Ref());
  // A nil dictionary has no property-list form: the handle ends empty.
  RVData fromNothing = RVData::DataWithBytes("x", 1);
  fromNothing = RVDictionary();
  EXPECT_EQ(fromNothing.Ref(), nil);

  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  RVData bytes;
  bytes.InitWithBytes("abc", 3);
  RVData appended(bytes);
  appended.AppendString("d");
  [pool drain];
  EXPECT_EQ(bytes.RetainCount(), 1u);
  EXPECT_EQ(appended.RetainCount(), 1u);
}

TEST(Data, EmptyHandlesAnswerNothing) {
  RVData empty;
  EXPECT_EQ(empty.Bytes(), nullptr);
  EXPECT_TRUE(empty.SubdataWithRange(RVRange(0, 0)).IsEmpty());
  char untouched = 'u';
  empty.GetBytes(&untouched);
  EXPECT_EQ(untouched, 'u');
  EXPECT_FALSE(empty.WriteToFile("/tmp/rovani-never-written"));
  EXPECT_TRUE(RVData::DataWithLength(0).IsEmpty());
  EXPECT_NE(RVData::DataWithLength(0).Ref(), nil);
}

TEST(Data, Files) {
  ScratchDir scratch;
  RVString dir(scratch.Path().c_str());
  RVString path(scratch.File("bytes.bin").c_str());
  RVData data = RVData::DataWithBytes("abc", 3);
  ASSERT_TRUE(data.WriteToFileAtomically(path));
  EXPECT_EQ(RVData::DataWithContentsOfFile(path).Length(), 3u);
  ASSERT_TRUE(RVData(RVString("longer")).WriteToFile(path));
  EXPECT_TRUE(RVString(RVData::DataWithContentsOfFile(path)) == "longer");

  EXPECT_FALSE(data.WriteToFile(dir + "/no/such/dir/file"));
  EXPECT_FALSE(data.WriteToFileAtomically(dir + "/no/such/dir/file"));
  RVData missing = RVData::DataWithContentsOfFile(dir + "/absent");
  EXPECT_EQ(missing.Ref(), nil);
  EXPECT_TRUE(RVData::DataWithContentsOfFile(dir).IsEmpty());
}

}  // namespace
