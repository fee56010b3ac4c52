#import <Foundation/Foundation.h>

#include <cstring>

#include <Rovani/Base64Encoding.h>

namespace {

// The alphabet of RFC 4648.
const char kBase64EncodeTable[] =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
static_assert(sizeof(kBase64EncodeTable) == 65, "64 characters and a NUL");

// Indexed by byte - 43 ("+" to "z"). "$" marks a byte outside the alphabet;
// any other entry e is the 6-bit value + 62, so e - 61 is never 0 for a
// character of the alphabet.
const char kBase64DecodeTable[] =
    "|$$$}rstuvwxyz{$$$$$$$>?@ABCDEFGHIJKLMNOPQRSTUVW$$$$$$XYZ[\\]^_`abcdefghijklmnopq";
static_assert(sizeof(kBase64DecodeTable) == 81, "80 entries and a NUL");

// One more than the byte's 6-bit value, or 0 for a byte to skip.
unsigned int DecodedValue(unsigned char byte) {
  unsigned char index = static_cast<unsigned char>(byte - 43);
  if (index >= 80) return 0;
  char entry = kBase64DecodeTable[index];
  if (entry == 0 || entry == '$') return 0;
  return static_cast<unsigned int>(entry - 61);
}

}  // namespace

Base64Encoding::Base64Encoding() {}

Base64Encoding::~Base64Encoding() {}

RVData Base64Encoding::EncodeData(RVData input) {
  unsigned int length = input.Length();
  const unsigned char* in = static_cast<const unsigned char*>(input.Bytes());
  RVData result;
  result.InitWithLength((length + 3) / 3 * 4);
  unsigned char* out = static_cast<unsigned char*>(result.MutableBytes());

  unsigned int whole = length / 3 * 3;
  unsigned int i = 0;
  for (; i < whole; i += 3) {
    unsigned char a = in[i], b = in[i + 1], c = in[i + 2];
    *out++ = kBase64EncodeTable[a >> 2];
    *out++ = kBase64EncodeTable[((a << 4) & 48) | (b >> 4)];
    *out++ = kBase64EncodeTable[((b << 2) & 60) | (c >> 6)];
    *out++ = kBase64EncodeTable[c & 63];
  }
  if (length - i == 1) {
    unsigned char a = in[i];
    *out++ = kBase64EncodeTable[a >> 2];
    *out++ = kBase64EncodeTable[(a << 4) & 48];
    *out++ = '=';
    *out++ = '=';
  } else if (length - i == 2) {
    unsigned char a = in[i], b = in[i + 1];
    *out++ = kBase64EncodeTable[a >> 2];
    *out++ = kBase64EncodeTable[((a << 4) & 48) | (b >> 4)];
    *out++ = kBase64EncodeTable[(b << 2) & 60];
    *out++ = '=';
  }
  return result;
}

// The decoded bytes are gathered in a private buffer and held as one
// immutable copy at the end: the same bytes as appending group by group, at
// linear cost.
RVData Base64Encoding::DecodeData(RVData input) {
  const unsigned char* in = static_cast<const unsigned char*>(input.Bytes());
  unsigned int length = input.Length();
  unsigned int pos = 0;
  NSMutableData* decoded = nil;

  while (pos < length) {
    // Three output bytes, then the group's four 6-bit input values.
    unsigned char block[7] = {0, 0, 0, 0, 0, 0, 0};
    unsigned int count = 0;
    for (unsigned int i = 0; i < 4 && pos < length; ++i) {
      unsigned int value = 0;
      while (pos < length && value == 0) value = DecodedValue(in[pos++]);
      // A character that was the input's last byte is not counted and its
      // value is dropped.
      if (pos < length) {
        ++count;
        if (value != 0) block[3 + i] = static_cast<unsigned char>(value - 1);
      } else {
        block[3 + i] = 0;
      }
    }
    if (count == 0) continue;
    block[0] = static_cast<unsigned char>((block[3] << 2) | (block[4] >> 4));
    block[1] = static_cast<unsigned char>((block[4] << 4) | (block[5] >> 2));
    block[2] = static_cast<unsigned char>((block[5] << 6) | block[6]);
    if (decoded == nil) decoded = [[NSMutableData alloc] initWithCapacity:length / 4 * 4 + 4];
    // Four counted characters give four bytes: the fourth is in0.
    [decoded appendBytes:block length:count];
  }

  RVData result;
  if (decoded != nil) {
    NSData* held = [decoded copy];
    [decoded release];
    result = static_cast<NSData*>(held);
    [held release];
  }
  return result;
}
