#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <string>

#include <Rovani/Rovani.h>

#include "support/TestSupport.h"

namespace {

std::string Bytes(const RVData& data) {
  if (data.Length() == 0) return std::string();
  return std::string(data.CharPointer(), data.Length());
}

struct Row {
  std::string input;
  std::string output;
};

TEST(Base64, EncodesWithFourZeroBytesAfterWholeGroups) {
  const std::string zeros(4, '\0');
  const Row rows[] = {{"", zeros},         {"M", "TQ=="},  {"Ma", "TWE="},
                      {"Man", "TWFu" + zeros}, {"Man!", "TWFuIQ=="}};
  for (const Row& row : rows) {
    EXPECT_EQ(Bytes(Base64Encoding::EncodeData(DataFromText(row.input))), row.output)
        << "input \"" << row.input << "\"";
  }
  // The result is the mutable buffer it was written into; no line breaks.
  RVData long_(Base64Encoding::EncodeData(DataFromText(std::string(300, 'x'))));
  EXPECT_EQ(long_.Length(), 404u);
  EXPECT_EQ(Bytes(long_).find('\n'), std::string::npos);
}

TEST(Base64, DecodesWithItsOwnCounts) {
  const Row rows[] = {{"TWFu", "Ma\x40"},
                      {std::string("TWFu\0", 5), "Man\x13"},
                      {"TWFu\n", "Man\x13"},
                      {"TWFuTWFu", "Man\x13Ma\x40"},
                      {"TQ==", std::string("M\0", 2)},
                      {"TWE=", std::string("Ma\0", 3)},
                      {"", ""}};
  for (const Row& row : rows) {
    EXPECT_EQ(Bytes(Base64Encoding::DecodeData(DataFromText(row.input))), row.output)
        << "input \"" << row.input << "\"";
  }
  EXPECT_EQ(Base64Encoding::DecodeData(RVData()).Ref(), nil);
  RVData decoded = Base64Encoding::DecodeData(DataFromText("TWFu TWFu"));
  EXPECT_FALSE([decoded.Ref() isKindOfClass:[NSMutableData class]]);
}

// Decoding what was encoded gives, for each group of three bytes, the three
// bytes and the first 6-bit value; a last group of one or two bytes is
// followed by a zero byte. Arbitrary bytes decode without trouble.
TEST(Base64, ArbitraryBytesBothWays) {
  unsigned int seed = 12345;
  auto next = [&] { return (seed = seed * 1103515245u + 12345u) >> 16; };
  for (unsigned int length = 0; length < 200; ++length) {
    std::string input;
    for (unsigned int i = 0; i < length; ++i) input.push_back(static_cast<char>(next() & 0xFF));
    std::string expected;
    unsigned int i = 0;
    for (; i + 3 <= length; i += 3)
      expected += input.substr(i, 3) + static_cast<char>(static_cast<unsigned char>(input[i]) >> 2);
    if (i < length) expected += input.substr(i) + '\0';

    RVData encoded = Base64Encoding::EncodeData(DataFromText(input));
    ASSERT_EQ(encoded.Length(), (length + 3) / 3 * 4);
    EXPECT_EQ(Bytes(Base64Encoding::DecodeData(encoded)), expected) << "length " << length;
    EXPECT_LE(Base64Encoding::DecodeData(DataFromText(input)).Length(), length);
  }
}

}  // namespace
