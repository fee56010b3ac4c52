/// \file
/// Base64Encoding, Base64 encoding and decoding of data.
#ifndef ROVANI_BASE64ENCODING_H
#define ROVANI_BASE64ENCODING_H

#include <Rovani/RVData.h>
#include <Rovani/RVDefines.h>

/// Data to Base64 text held in data, and back. Bytes only: no
/// strings are made and no line breaks are written.
///
/// Both directions keep fixed sizing and counting rules of their own; it is
/// not a drop-in RFC 4648 codec.
class RV_EXPORT Base64Encoding {
 public:
  /// Nothing to set up; the members are static.
  Base64Encoding();
  /// Nothing to release.
  ~Base64Encoding();

  /// The Base64 text of the input's bytes, with "=" padding.
  /// \warning EncodeData sizes its result (n + 3) / 3 * 4 bytes, so when the
  ///   input's length is a multiple of 3 (none included) four zero bytes
  ///   follow the text and are part of the result.
  /// \return the text's bytes, without a terminator (but see above).
  static RVData EncodeData(RVData input);
  /// The bytes of Base64 text, by the library's own counting rule.
  /// \warning DecodeData gives, for each group of up to four characters, one
  ///   byte per character that was followed by at least one more input
  ///   byte: the value of the input's last character is lost, and a full
  ///   group of four gives four bytes, the fourth being the group's first
  ///   6-bit value. Kept by design; it is not the inverse of EncodeData().
  /// \param input the text's bytes; bytes outside the alphabet, "=" and
  ///   white space are skipped.
  /// \return the decoded bytes by that rule.
  static RVData DecodeData(RVData input);
};

#endif
