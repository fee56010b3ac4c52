/// \file
/// Logging (RVLog, DebugLog), a short text hash and UUIDs (RVUtilities).
#ifndef ROVANI_RVUTILITIES_H
#define ROVANI_RVUTILITIES_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVString.h>

/// Writes one log line to standard error through the platform's NSLogv,
/// which adds its own prefix (time, process) and the line end.
///
/// Both logging functions hand the format and the arguments to the
/// platform's NSLogv (Foundation placeholders: `%@` for an object, <tt>\%d</tt>, <tt>\%s</tt>
/// and the rest of the printf family). Neither is ever silenced: DebugLog
/// logs in every build, exactly as RVLog does (by design).
/// \param format the format; pass handles as their Ref() for `%@`.
/// \param ... the arguments the format names.
///@{
RV_EXPORT void RVLog(RVString format, ...);
RV_EXPORT void DebugLog(RVString format, ...);
///@}

/// A short text hash and UUIDs; static members only.
class RV_EXPORT RVUtilities {
 public:
  /// The first four bytes of the MD5 digest of the text's UTF-8 bytes, digest
  /// byte 0 the most significant: a 32-bit fingerprint, not a full MD5. Texts
  /// that share those four bytes collide.
  /// \return the fingerprint as a signed integer (the empty text gives
  ///   0xD41D8CD9, negative).
  static int Hash(const RVString& text);
  /// Hash's four bytes as eight upper-case hexadecimal digits.
  /// \return the digits, such as "D41D8CD9" for the empty text.
  static RVString HashAsString(const RVString& text);
  /// A new random UUID as 36 upper-case characters (8-4-4-4-12). The text is
  /// autoreleased: the calling thread needs a pool.
  /// \return the UUID's text.
  static RVString CreateUUID();
};

#endif
