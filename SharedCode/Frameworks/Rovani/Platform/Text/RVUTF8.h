// The one UTF-8 rule of the library and the rovani program: strict UTF-8
// as Unicode defines it (no overlong forms, no surrogates, nothing beyond
// U+10FFFF), one encoder and one validator. Header-only plain C++, so the
// program, which sees only public headers and this folder's rules, checks
// text exactly as the library does.
#ifndef ROVANI_PLATFORM_RVUTF8_H
#define ROVANI_PLATFORM_RVUTF8_H

#include <cstddef>
#include <cstdint>
#include <string>

// Writes the UTF-8 form of code point c (at most U+10FFFF, no surrogate)
// at p, which has room for four bytes, and answers the end of what it wrote.
inline char* RVPutUTF8(char* p, uint32_t c) {
  if (c < 0x80) {
    *p++ = static_cast<char>(c);
  } else if (c < 0x800) {
    *p++ = static_cast<char>(0xC0 | (c >> 6));
    *p++ = static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    *p++ = static_cast<char>(0xE0 | (c >> 12));
    *p++ = static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    *p++ = static_cast<char>(0x80 | (c & 0x3F));
  } else {
    *p++ = static_cast<char>(0xF0 | (c >> 18));
    *p++ = static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    *p++ = static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    *p++ = static_cast<char>(0x80 | (c & 0x3F));
  }
  return p;
}

// Appends the UTF-8 form of code point c.
inline void RVAppendUTF8(std::string* out, uint32_t c) {
  char bytes[4];
  out->append(bytes, static_cast<size_t>(RVPutUTF8(bytes, c) - bytes));
}

// Decodes the sequence at *i of n bytes into *code and moves *i past it;
// false (with *i unchanged) when the bytes there are no strict UTF-8.
inline bool RVDecodeUTF8(const unsigned char* p, size_t n, size_t* i, uint32_t* code) {
  unsigned char c = p[*i];
  if (c < 0x80) {
    *code = c;
    ++*i;
    return true;
  }
  size_t extra;
  uint32_t value;
  if (c >= 0xC2 && c <= 0xDF) {
    extra = 1;
    value = c & 0x1F;
  } else if (c >= 0xE0 && c <= 0xEF) {
    extra = 2;
    value = c & 0x0F;
  } else if (c >= 0xF0 && c <= 0xF4) {
    extra = 3;
    value = c & 0x07;
  } else {
    return false;
  }
  if (n - *i <= extra) return false;
  for (size_t k = 1; k <= extra; ++k) {
    unsigned char next = p[*i + k];
    if ((next & 0xC0) != 0x80) return false;
    value = (value << 6) | (next & 0x3F);
  }
  if ((extra == 2 && (value < 0x800 || (value >= 0xD800 && value <= 0xDFFF))) ||
      (extra == 3 && (value < 0x10000 || value > 0x10FFFF)))
    return false;
  *code = value;
  *i += extra + 1;
  return true;
}

// The offset of the first byte that does not belong to strict UTF-8 text,
// or std::string::npos when all n bytes do.
inline size_t RVFirstInvalidUTF8(const void* bytes, size_t n) {
  const unsigned char* p = static_cast<const unsigned char*>(bytes);
  size_t i = 0;
  uint32_t code;
  while (i < n) {
    if (p[i] < 0x80) {
      ++i;
    } else if (!RVDecodeUTF8(p, n, &i, &code)) {
      return i;
    }
  }
  return std::string::npos;
}

// The 1-based line and column of offset in text: lines end at LF, at CR,
// and at CR LF; a column counts characters (UTF-8 sequences), not bytes.
inline void RVLineAndColumn(const unsigned char* p, size_t offset, size_t* line, size_t* column) {
  size_t l = 1, c = 1;
  for (size_t i = 0; i < offset; ++i) {
    if (p[i] == '\n' || (p[i] == '\r' && !(i + 1 < offset && p[i + 1] == '\n'))) {
      ++l;
      c = 1;
    } else if ((p[i] & 0xC0) != 0x80 && p[i] != '\r') {
      ++c;
    }
  }
  *line = l;
  *column = c;
}

#endif
