// Base64Encoding: data to Base64 text held in data, and back. Bytes only: no
// strings are made and no line breaks are written.
//
// Both directions keep fixed sizing and counting rules of their own:
// - EncodeData sizes its result (n + 3) / 3 * 4 bytes, so when the input's
//   length is a multiple of 3 (none included) four zero bytes follow the
//   text and are part of the result.
// - DecodeData gives, for each group of up to four characters, one byte per
//   character that was followed by at least one more input byte: the value
//   of the input's last character is lost, and a full group of four gives
//   four bytes, the fourth being the group's first 6-bit value. Bytes outside
//   the alphabet, "=" and white space are skipped.
#ifndef ROVANI_BASE64ENCODING_H
#define ROVANI_BASE64ENCODING_H

#include <Rovani/RVData.h>
#include <Rovani/RVDefines.h>

class RV_EXPORT Base64Encoding {
 public:
  Base64Encoding();
  ~Base64Encoding();

  static RVData EncodeData(RVData input);
  static RVData DecodeData(RVData input);
};

#endif
