/// \file
/// RVInternalRef, conversions between Core Foundation references and
/// handles, with the Core Foundation range types it needs.
#ifndef ROVANI_RVINTERNALREF_H
#define ROVANI_RVINTERNALREF_H

#include <Rovani/RVArray.h>
#include <Rovani/RVBool.h>
#include <Rovani/RVBundle.h>
#include <Rovani/RVData.h>
#include <Rovani/RVDate.h>
#include <Rovani/RVDateFormatter.h>
#include <Rovani/RVDefines.h>
#include <Rovani/RVDictionary.h>
#include <Rovani/RVNumber.h>
#include <Rovani/RVRange.h>
#include <Rovani/RVString.h>
#include <Rovani/RVURL.h>
#include <Rovani/RVValue.h>

#if !defined(__COREFOUNDATION_CFBASE__)
/// Core Foundation's signed index type (declared here when no Core
/// Foundation header came first).
typedef signed long CFIndex;
/// Core Foundation's range: location then length, signed (declared here
/// when no Core Foundation header came first).
struct CFRange {
  CFIndex location;  ///< The first position.
  CFIndex length;    ///< The number of positions.
};
#endif

/// Conversions between Core Foundation references and handles; static
/// members only.
///
/// A reference is the Foundation object itself, so nothing is copied:
/// Access and ToRVId hand out the same pointer without a retain; Convert
/// checks the reference's type and wraps it (retained); ConvertAndRelease does
/// the same and then releases the caller's reference, whatever its type.
/// Nothing here logs, reports an error or throws: a null or mistyped
/// reference gives the result class's default handle.
class RV_EXPORT RVInternalRef {
 public:
  /// No instances.
  RVInternalRef() = delete;

  /// The RVArray handle's object as a `CFArrayRef`, not retained: the handle
  /// keeps owning it, and the caller must not release it.
  /// \param array the handle (a pointer to it for the second form).
  /// \return the held object; null for an empty handle.
  ///@{
  static CFArrayRef Access(const RVArray& array);
  static CFArrayRef Access(const RVArray* array);
  ///@}
  /// The RVBool handle's object as a `CFBooleanRef`, not retained: the handle
  /// keeps owning it, and the caller must not release it.
  /// \param boolean the handle (a pointer to it for the second form).
  /// \return the held object; null for an empty handle.
  ///@{
  static CFBooleanRef Access(const RVBool& boolean);
  static CFBooleanRef Access(const RVBool* boolean);
  ///@}
  /// The RVString handle's object as a `CFStringRef`, not retained: the handle
  /// keeps owning it, and the caller must not release it.
  /// \param string the handle (a pointer to it for the second form).
  /// \return the held object; null for an empty handle.
  ///@{
  static CFStringRef Access(const RVString& string);
  static CFStringRef Access(const RVString* string);
  ///@}
  /// The RVData handle's object as a `CFDataRef`, not retained: the handle
  /// keeps owning it, and the caller must not release it.
  /// \param data the handle (a pointer to it for the second form).
  /// \return the held object; null for an empty handle.
  ///@{
  static CFDataRef Access(const RVData& data);
  static CFDataRef Access(const RVData* data);
  ///@}
  /// The RVDate handle's object as a `CFDateRef`, not retained: the handle
  /// keeps owning it, and the caller must not release it.
  /// \param date the handle (a pointer to it for the second form).
  /// \return the held object; null for an empty handle.
  ///@{
  static CFDateRef Access(const RVDate& date);
  static CFDateRef Access(const RVDate* date);
  ///@}
  /// The RVDateFormatter handle's object as a `CFDateFormatterRef`, not retained: the handle
  /// keeps owning it, and the caller must not release it.
  /// \param formatter the handle (a pointer to it for the second form).
  /// \return the held object; null for an empty handle.
  ///@{
  static CFDateFormatterRef Access(const RVDateFormatter& formatter);
  static CFDateFormatterRef Access(const RVDateFormatter* formatter);
  ///@}
  /// The RVDictionary handle's object as a `CFDictionaryRef`, not retained: the handle
  /// keeps owning it, and the caller must not release it.
  /// \param dictionary the handle (a pointer to it for the second form).
  /// \return the held object; null for an empty handle.
  ///@{
  static CFDictionaryRef Access(const RVDictionary& dictionary);
  static CFDictionaryRef Access(const RVDictionary* dictionary);
  ///@}
  /// The RVNumber handle's object as a `CFNumberRef`, not retained: the handle
  /// keeps owning it, and the caller must not release it.
  /// \param number the handle (a pointer to it for the second form).
  /// \return the held object; null for an empty handle.
  ///@{
  static CFNumberRef Access(const RVNumber& number);
  static CFNumberRef Access(const RVNumber* number);
  ///@}
  /// The RVURL handle's object as a `CFURLRef`, not retained: the handle
  /// keeps owning it, and the caller must not release it.
  /// \param url the handle (a pointer to it for the second form).
  /// \return the held object; null for an empty handle.
  ///@{
  static CFURLRef Access(const RVURL& url);
  static CFURLRef Access(const RVURL* url);
  ///@}
  /// The RVValue handle's object as a `CFNumberRef`, not retained: the handle
  /// keeps owning it, and the caller must not release it.
  /// \param value the handle (a pointer to it for the second form).
  /// \return the held object; null for an empty handle.
  ///@{
  static CFNumberRef Access(const RVValue& value);
  static CFNumberRef Access(const RVValue* value);
  ///@}
  /// The range as Core Foundation's range.
  /// \param range the range (a pointer to it for the second form).
  /// \return a CFRange with the same location and length.
  ///@{
  static CFRange Access(const RVRange& range);
  static CFRange Access(const RVRange* range);
  ///@}
  /// Core Foundation's range as an RVRange.
  /// \return the range with that location and length, cut to 32 bits.
  static RVRange Convert(CFRange range);

  /// The handle's slot, for a creator that writes a created reference into an
  /// out-parameter; the handle then owns it.
  /// \warning Whatever the slot held is overwritten without a release: use
  ///   it on an empty handle.
  /// \param string the handle that takes the created string.
  /// \return a pointer to the handle's own slot.
  static CFStringRef* Assign(RVString& string);
  /// The handle's slot, as Assign(RVString&).
  /// \warning Whatever the slot held is overwritten without a release: use
  ///   it on an empty handle.
  /// \param data the handle that takes the created data.
  /// \return a pointer to the handle's own slot.
  static CFDataRef* Assign(RVData& data);

  /// The same pointer, no retain.
  /// \param ref a Core Foundation reference, or null.
  /// \return \p ref as an untyped object pointer.
  ///@{
  static RVId ToRVId(CFBooleanRef ref);
  static RVId ToRVId(CFArrayRef ref);
  static RVId ToRVId(CFBundleRef ref);
  static RVId ToRVId(CFDataRef ref);
  static RVId ToRVId(CFMutableDataRef ref);
  static RVId ToRVId(CFDateRef ref);
  static RVId ToRVId(CFDateFormatterRef ref);
  static RVId ToRVId(CFDictionaryRef ref);
  static RVId ToRVId(const void* ref);
  static RVId ToRVId(CFNumberRef ref);
  static RVId ToRVId(CFStringRef ref);
  static RVId ToRVId(CFURLRef ref);
  ///@}

  /// A handle holding \p ref (retained) when it is a reference of the
  /// handle's kind; the class's default handle for null or for a reference
  /// of another type. Nothing is logged.
  /// \param ref a Core Foundation reference, or null.
  /// \return the new handle.
  ///@{
  static RVArray Convert(CFArrayRef ref);
  static RVURL Convert(CFURLRef ref);
  static RVBool Convert(CFBooleanRef ref);
  /// Through the bundle's own assignment from an object, which logs its
  /// warning.
  /// \param ref a bundle reference, or null.
  /// \return a handle on the bundle; an empty one for null or another type.
  static RVBundle Convert(CFBundleRef ref);
  static RVData Convert(CFDataRef ref);
  static RVDate Convert(CFDateRef ref);
  /// A null or mistyped reference gives a default formatter, which is a
  /// working one, not an empty handle.
  /// \param ref a date-formatter reference, or null.
  /// \return a handle on the formatter, or a new default formatter.
  static RVDateFormatter Convert(CFDateFormatterRef ref);
  static RVDictionary Convert(CFDictionaryRef ref);
  /// The dictionary conversion for an untyped reference.
  /// \param ref any reference, or null.
  /// \return a handle on it when it is a dictionary, else an empty dictionary.
  static RVDictionary Convert(const void* ref);
  static RVNumber Convert(CFNumberRef ref);
  /// A string handle holding \p ref (retained) when it is a string.
  /// \param ref a string reference, or null.
  /// \return the new handle; the default string (the empty literal, not
  ///   nil) for null or for a reference of another type.
  static RVString Convert(CFStringRef ref);
  ///@}
  /// A value handle on a number reference.
  /// \param ref a number reference, or null.
  /// \return a value holding the number (retained); an empty value for null
  ///   or for a reference of another type.
  static RVValue ConvertToValue(CFNumberRef ref);

  /// Convert, then one release of \p ref (unless null), whatever its type,
  /// for references obtained under Core Foundation's "create" or "copy"
  /// rule.
  /// \note A reference of another type is released and lost: the caller's
  ///   ownership ends in every case.
  /// \param ref a reference the caller owns, or null.
  /// \return the handle Convert gives for \p ref.
  ///@{
  static RVArray ConvertAndRelease(CFArrayRef ref);
  static RVURL ConvertAndRelease(CFURLRef ref);
  static RVBool ConvertAndRelease(CFBooleanRef ref);
  static RVBundle ConvertAndRelease(CFBundleRef ref);
  static RVData ConvertAndRelease(CFDataRef ref);
  static RVDate ConvertAndRelease(CFDateRef ref);
  static RVDateFormatter ConvertAndRelease(CFDateFormatterRef ref);
  static RVDictionary ConvertAndRelease(CFDictionaryRef ref);
  static RVDictionary ConvertAndRelease(const void* ref);
  static RVNumber ConvertAndRelease(CFNumberRef ref);
  static RVString ConvertAndRelease(CFStringRef ref);
  ///@}
  /// ConvertToValue, then one release of \p ref (unless null), whatever its
  /// type.
  /// \param ref a number reference the caller owns, or null.
  /// \return the value ConvertToValue gives for \p ref.
  static RVValue ConvertToValueAndRelease(CFNumberRef ref);
};

#endif
