// RVInternalRef: conversions between Core Foundation references and handles.
// A reference is the Foundation object itself, so nothing is copied:
// Access and ToRVId hand out the same pointer without a retain; Convert
// checks the reference's type and wraps it (retained); ConvertAndRelease does
// the same and then releases the caller's reference, whatever its type.
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
typedef signed long CFIndex;
struct CFRange {
  CFIndex location;
  CFIndex length;
};
#endif

class RV_EXPORT RVInternalRef {
 public:
  RVInternalRef() = delete;

  // The held object as a reference; the handle keeps owning it.
  static CFArrayRef Access(const RVArray& array);
  static CFArrayRef Access(const RVArray* array);
  static CFBooleanRef Access(const RVBool& boolean);
  static CFBooleanRef Access(const RVBool* boolean);
  static CFStringRef Access(const RVString& string);
  static CFStringRef Access(const RVString* string);
  static CFDataRef Access(const RVData& data);
  static CFDataRef Access(const RVData* data);
  static CFDateRef Access(const RVDate& date);
  static CFDateRef Access(const RVDate* date);
  static CFDateFormatterRef Access(const RVDateFormatter& formatter);
  static CFDateFormatterRef Access(const RVDateFormatter* formatter);
  static CFDictionaryRef Access(const RVDictionary& dictionary);
  static CFDictionaryRef Access(const RVDictionary* dictionary);
  static CFNumberRef Access(const RVNumber& number);
  static CFNumberRef Access(const RVNumber* number);
  static CFURLRef Access(const RVURL& url);
  static CFURLRef Access(const RVURL* url);
  static CFNumberRef Access(const RVValue& value);
  static CFNumberRef Access(const RVValue* value);
  static CFRange Access(const RVRange& range);
  static CFRange Access(const RVRange* range);
  static RVRange Convert(CFRange range);

  // The handle's slot, for a creator that writes a created reference into an
  // out-parameter; the handle then owns it. Whatever the slot held is
  // overwritten without a release: use it on an empty handle.
  static CFStringRef* Assign(RVString& string);
  static CFDataRef* Assign(RVData& data);

  // The same pointer, no retain.
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

  // The class's default handle for null or for a reference of another type.
  static RVArray Convert(CFArrayRef ref);
  static RVURL Convert(CFURLRef ref);
  static RVBool Convert(CFBooleanRef ref);
  // Through the bundle's own assignment from an object, which logs its
  // warning.
  static RVBundle Convert(CFBundleRef ref);
  static RVData Convert(CFDataRef ref);
  static RVDate Convert(CFDateRef ref);
  // A null or mistyped reference gives a default formatter, which is a
  // working one, not an empty handle.
  static RVDateFormatter Convert(CFDateFormatterRef ref);
  static RVDictionary Convert(CFDictionaryRef ref);
  static RVDictionary Convert(const void* ref);
  static RVNumber Convert(CFNumberRef ref);
  static RVString Convert(CFStringRef ref);
  static RVValue ConvertToValue(CFNumberRef ref);

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
  static RVValue ConvertToValueAndRelease(CFNumberRef ref);
};

#endif
