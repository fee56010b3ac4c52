#import <Foundation/Foundation.h>

#include <cstring>

#include <Rovani/Base64Encoding.h>

#include "Platform/Runtime/RVOwned.h"
#include "Platform/Text/RVBase64.h"

Base64Encoding::Base64Encoding() {}

Base64Encoding::~Base64Encoding() {}

RVData Base64Encoding::EncodeData(RVData input) {
  unsigned int length = input.Length();
  const unsigned char* in = static_cast<const unsigned char*>(input.Bytes());
  RVData result;
  result.InitWithLength((length + 3) / 3 * 4);
  unsigned char* out = static_cast<unsigned char*>(result.MutableBytes());

  // The buffer is a group longer than the text when length is a multiple
  // of three; those bytes stay zero.
  RVBase64EncodeTo(reinterpret_cast<char*>(out), in, length);
  return result;
}

// Decoding keeps rules of its own that callers rely on (characters outside
// the alphabet are skipped, the input's last byte is dropped, a short group
// still counts its bytes), so it shares the alphabet, not the strict
// decoder of RVBase64.h. The decoded bytes are gathered in a private buffer
// and held as one immutable copy at the end: the same bytes as appending
// group by group, at linear cost.
RVData Base64Encoding::DecodeData(RVData input) {
  const unsigned char* in = static_cast<const unsigned char*>(input.Bytes());
  unsigned int length = input.Length();
  unsigned int pos = 0;
  RVOwned<NSMutableData*> decoded;

  while (pos < length) {
    // Three output bytes, then the group's four 6-bit input values.
    unsigned char block[7] = {0, 0, 0, 0, 0, 0, 0};
    unsigned int count = 0;
    for (unsigned int i = 0; i < 4 && pos < length; ++i) {
      unsigned int value = 0;
      while (pos < length && value == 0) value = RVBase64DigitPlusOne(in[pos++]);
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
    if (!decoded) decoded = RVAdopt([[NSMutableData alloc] initWithCapacity:length / 4 * 4 + 4]);
    // Four counted characters give four bytes: the fourth is in0.
    [decoded.Get() appendBytes:block length:count];
  }

  RVData result;
  if (decoded) {
    RVOwned<NSData*> held = RVAdopt([decoded.Get() copy]);
    result = held.Get();
  }
  return result;
}
