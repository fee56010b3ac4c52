// Logging, a short text hash and UUIDs.
//
// Both logging functions hand the format and the arguments to the
// platform's NSLogv (Foundation placeholders: "%@" for an object, "%d", "%s"
// and the rest of the printf family). Neither is ever silenced.
#ifndef ROVANI_RVUTILITIES_H
#define ROVANI_RVUTILITIES_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVString.h>

RV_EXPORT void RVLog(RVString format, ...);
RV_EXPORT void DebugLog(RVString format, ...);

class RV_EXPORT RVUtilities {
 public:
  // The first four bytes of the MD5 digest of the text's UTF-8 bytes, digest
  // byte 0 the most significant: a 32-bit fingerprint, not a full MD5. Texts
  // that share those four bytes collide.
  static int Hash(const RVString& text);
  // Hash's four bytes as eight upper-case hexadecimal digits.
  static RVString HashAsString(const RVString& text);
  // A new random UUID as 36 upper-case characters (8-4-4-4-12). The text is
  // autoreleased: the calling thread needs a pool.
  static RVString CreateUUID();
};

#endif
