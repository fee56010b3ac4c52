// The Base64 alphabet of RFC 4648, both ways: for the library's Base64
// coder and for <data> in XML property lists.
#ifndef ROVANI_PLATFORM_RVBASE64ALPHABET_H
#define ROVANI_PLATFORM_RVBASE64ALPHABET_H

inline constexpr char kRVBase64Alphabet[] =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
static_assert(sizeof(kRVBase64Alphabet) == 65, "64 characters and a NUL");

// Indexed by byte - 43 ("+" to "z"). "$" marks a byte outside the alphabet;
// any other entry e is the 6-bit value + 62, so e - 61 is never 0 for a
// character of the alphabet.
inline constexpr char kRVBase64DigitTable[] =
    "|$$$}rstuvwxyz{$$$$$$$>?@ABCDEFGHIJKLMNOPQRSTUVW$$$$$$XYZ[\\]^_`abcdefghijklmnopq";
static_assert(sizeof(kRVBase64DigitTable) == 81, "80 entries and a NUL");

// One more than the byte's 6-bit value; 0 for a byte outside the alphabet
// ("=" included).
inline unsigned int RVBase64DigitPlusOne(unsigned char byte) {
  unsigned char index = static_cast<unsigned char>(byte - 43);
  if (index >= 80) return 0;
  char entry = kRVBase64DigitTable[index];
  if (entry == '$') return 0;
  return static_cast<unsigned int>(entry - 61);
}

#endif
