// Standard Base64 (RFC 4648) both ways, in plain C++: the one codec the
// library and the rovani program share. Header-only, so the program, which
// sees only the public headers otherwise, can use it without the library
// exporting it.
//
// Encoding writes the alphabet with "=" padding and no line breaks.
// Decoding is strict: the alphabet, "=" padding at the end only (up to two,
// making the text a whole number of four-character groups), white space
// (space, tab, CR, LF) skipped anywhere. Anything else is refused with
// the offset where it went wrong, so that the bytes given back are always
// the ones encoded.
#ifndef ROVANI_PLATFORM_RVBASE64_H
#define ROVANI_PLATFORM_RVBASE64_H

#include <cstddef>
#include <string>

#include "Platform/Text/RVBase64Alphabet.h"

// Writes the (length + 2) / 3 * 4 characters of bytes' Base64 text at out
// and answers the end of what it wrote.
inline char* RVBase64EncodeTo(char* out, const void* bytes, size_t length) {
  const unsigned char* in = static_cast<const unsigned char*>(bytes);
  size_t i = 0;
  for (; i + 3 <= length; i += 3) {
    unsigned int group = (in[i] << 16) | (in[i + 1] << 8) | in[i + 2];
    *out++ = kRVBase64Alphabet[(group >> 18) & 63];
    *out++ = kRVBase64Alphabet[(group >> 12) & 63];
    *out++ = kRVBase64Alphabet[(group >> 6) & 63];
    *out++ = kRVBase64Alphabet[group & 63];
  }
  if (i < length) {
    unsigned int group = in[i] << 16;
    if (i + 1 < length) group |= in[i + 1] << 8;
    *out++ = kRVBase64Alphabet[(group >> 18) & 63];
    *out++ = kRVBase64Alphabet[(group >> 12) & 63];
    *out++ = i + 1 < length ? kRVBase64Alphabet[(group >> 6) & 63] : '=';
    *out++ = '=';
  }
  return out;
}

inline std::string RVBase64Encode(const void* bytes, size_t length) {
  std::string text((length + 2) / 3 * 4, '\0');
  RVBase64EncodeTo(&text[0], bytes, length);
  return text;
}

// Why a text did not decode, and where (an offset into the text).
struct RVBase64Fault {
  enum Kind { kNone, kBadCharacter, kAfterPadding, kTruncated } kind = kNone;
  size_t offset = 0;
};

// Decodes text into bytes (replacing what bytes held). False, with fault
// filled in when given, for text that is not strict Base64. With
// anyPadding, "=" may stand in any number at the end (property lists
// written by other tools are read as leniently as they always were).
inline bool RVBase64Decode(const char* text, size_t length, std::string& bytes,
                           RVBase64Fault* fault = nullptr, bool anyPadding = false) {
  auto fail = [&](RVBase64Fault::Kind kind, size_t offset) {
    if (fault != nullptr) {
      fault->kind = kind;
      fault->offset = offset;
    }
    return false;
  };
  bytes.clear();
  bytes.reserve(length / 4 * 3);
  unsigned int bits = 0, held = 0;
  size_t digits = 0, padding = 0;
  for (size_t i = 0; i < length; ++i) {
    unsigned char c = static_cast<unsigned char>(text[i]);
    if (c == ' ' || c == '\t' || c == '\r' || c == '\n') continue;
    if (c == '=') {
      ++padding;
      continue;
    }
    unsigned int digit = RVBase64DigitPlusOne(c);
    if (digit == 0) return fail(RVBase64Fault::kBadCharacter, i);
    if (padding > 0) return fail(RVBase64Fault::kAfterPadding, i);
    ++digits;
    bits = (bits << 6) | (digit - 1);
    held += 6;
    if (held >= 8) {
      held -= 8;
      bytes += static_cast<char>((bits >> held) & 0xFF);
    }
  }
  // One digit alone cannot hold a byte; padding, when present, completes
  // the last group of four exactly.
  if (digits % 4 == 1 ||
      (!anyPadding && (padding > 2 || (padding > 0 && (digits + padding) % 4 != 0)))) {
    return fail(RVBase64Fault::kTruncated, length);
  }
  return true;
}

#endif
