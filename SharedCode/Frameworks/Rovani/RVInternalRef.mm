#import <Foundation/Foundation.h>

#include <Rovani/RVInternalRef.h>

#include "Platform/CoreFoundation/RVCoreFoundation.h"

// ---------------------------------------------------------------------------
// Access: the held object, no retain.

CFArrayRef RVInternalRef::Access(const RVArray& array) { return (CFArrayRef)array.Ref(); }
CFArrayRef RVInternalRef::Access(const RVArray* array) { return Access(*array); }
CFBooleanRef RVInternalRef::Access(const RVBool& boolean) { return (CFBooleanRef)boolean.Ref(); }
CFBooleanRef RVInternalRef::Access(const RVBool* boolean) { return Access(*boolean); }
CFStringRef RVInternalRef::Access(const RVString& string) { return (CFStringRef)string.Ref(); }
CFStringRef RVInternalRef::Access(const RVString* string) { return Access(*string); }
CFDataRef RVInternalRef::Access(const RVData& data) { return (CFDataRef)data.Ref(); }
CFDataRef RVInternalRef::Access(const RVData* data) { return Access(*data); }
CFDateRef RVInternalRef::Access(const RVDate& date) { return (CFDateRef)date.Ref(); }
CFDateRef RVInternalRef::Access(const RVDate* date) { return Access(*date); }
CFDateFormatterRef RVInternalRef::Access(const RVDateFormatter& formatter) {
  return (CFDateFormatterRef)formatter.Ref();
}
CFDateFormatterRef RVInternalRef::Access(const RVDateFormatter* formatter) {
  return Access(*formatter);
}
CFDictionaryRef RVInternalRef::Access(const RVDictionary& dictionary) {
  return (CFDictionaryRef)dictionary.Ref();
}
CFDictionaryRef RVInternalRef::Access(const RVDictionary* dictionary) {
  return Access(*dictionary);
}
CFNumberRef RVInternalRef::Access(const RVNumber& number) { return (CFNumberRef)number.Ref(); }
CFNumberRef RVInternalRef::Access(const RVNumber* number) { return Access(*number); }
CFURLRef RVInternalRef::Access(const RVURL& url) { return (CFURLRef)url.Ref(); }
CFURLRef RVInternalRef::Access(const RVURL* url) { return Access(*url); }
CFNumberRef RVInternalRef::Access(const RVValue& value) { return (CFNumberRef)value.Ref(); }
CFNumberRef RVInternalRef::Access(const RVValue* value) { return Access(*value); }

CFRange RVInternalRef::Access(const RVRange& range) {
  CFRange result;
  result.location = range.Location();
  result.length = range.Length();
  return result;
}
CFRange RVInternalRef::Access(const RVRange* range) { return Access(*range); }

RVRange RVInternalRef::Convert(CFRange range) {
  return RVRange(static_cast<unsigned int>(range.location),
                 static_cast<unsigned int>(range.length));
}

// ---------------------------------------------------------------------------
// Assign: the handle's own slot.

CFStringRef* RVInternalRef::Assign(RVString& string) {
  return (CFStringRef*)string.InternalRef();
}
CFDataRef* RVInternalRef::Assign(RVData& data) {
  return (CFDataRef*)data.InternalRef();
}

// ---------------------------------------------------------------------------
// ToRVId: the same pointer.

RVId RVInternalRef::ToRVId(CFBooleanRef ref) { return (RVId)ref; }
RVId RVInternalRef::ToRVId(CFArrayRef ref) { return (RVId)ref; }
RVId RVInternalRef::ToRVId(CFBundleRef ref) { return (RVId)ref; }
RVId RVInternalRef::ToRVId(CFDataRef ref) { return (RVId)ref; }
RVId RVInternalRef::ToRVId(CFMutableDataRef ref) { return (RVId)ref; }
RVId RVInternalRef::ToRVId(CFDateRef ref) { return (RVId)ref; }
RVId RVInternalRef::ToRVId(CFDateFormatterRef ref) { return (RVId)ref; }
RVId RVInternalRef::ToRVId(CFDictionaryRef ref) { return (RVId)ref; }
RVId RVInternalRef::ToRVId(const void* ref) { return (RVId)ref; }
RVId RVInternalRef::ToRVId(CFNumberRef ref) { return (RVId)ref; }
RVId RVInternalRef::ToRVId(CFStringRef ref) { return (RVId)ref; }
RVId RVInternalRef::ToRVId(CFURLRef ref) { return (RVId)ref; }

// ---------------------------------------------------------------------------
// Convert: checked and retained. A reference of another type never gives a
// handle of the wrong class: the result is the class's default.

namespace {

template <typename Handle>
Handle Checked(CFTypeRef ref, CFTypeID expected) {
  Handle result;
  if (ref != nullptr && CFGetTypeID(ref) == expected) static_cast<RVObject&>(result) = (RVId)ref;
  return result;
}

template <typename Result>
Result Released(Result result, CFTypeRef ref) {
  // The caller's ownership ends whether or not the type matched.
  if (ref != nullptr) CFRelease(ref);
  return result;
}

}  // namespace

RVArray RVInternalRef::Convert(CFArrayRef ref) { return Checked<RVArray>(ref, CFArrayGetTypeID()); }
RVURL RVInternalRef::Convert(CFURLRef ref) { return Checked<RVURL>(ref, CFURLGetTypeID()); }
RVBundle RVInternalRef::Convert(CFBundleRef ref) {
  RVBundle result;
  if (ref != nullptr && CFGetTypeID(ref) == CFBundleGetTypeID()) result = (RVId)ref;
  return result;
}
RVBool RVInternalRef::Convert(CFBooleanRef ref) { return Checked<RVBool>(ref, CFBooleanGetTypeID()); }
RVData RVInternalRef::Convert(CFDataRef ref) { return Checked<RVData>(ref, CFDataGetTypeID()); }
RVDate RVInternalRef::Convert(CFDateRef ref) { return Checked<RVDate>(ref, CFDateGetTypeID()); }
RVDateFormatter RVInternalRef::Convert(CFDateFormatterRef ref) {
  RVDateFormatter result;
  if (ref != nullptr && CFGetTypeID(ref) == CFDateFormatterGetTypeID()) result = (RVId)ref;
  return result;
}
RVDictionary RVInternalRef::Convert(CFDictionaryRef ref) {
  return Checked<RVDictionary>(ref, CFDictionaryGetTypeID());
}
RVDictionary RVInternalRef::Convert(const void* ref) {
  RVDictionary result;
  result = Convert(static_cast<CFDictionaryRef>(ref));
  return result;
}
RVNumber RVInternalRef::Convert(CFNumberRef ref) {
  return Checked<RVNumber>(ref, CFNumberGetTypeID());
}
RVString RVInternalRef::Convert(CFStringRef ref) {
  return Checked<RVString>(ref, CFStringGetTypeID());
}

RVValue RVInternalRef::ConvertToValue(CFNumberRef ref) {
  RVValue result;
  if (ref != nullptr && CFGetTypeID(ref) == CFNumberGetTypeID()) result = Convert(ref);
  return result;
}

RVArray RVInternalRef::ConvertAndRelease(CFArrayRef ref) { return Released(Convert(ref), ref); }
RVURL RVInternalRef::ConvertAndRelease(CFURLRef ref) { return Released(Convert(ref), ref); }
RVBundle RVInternalRef::ConvertAndRelease(CFBundleRef ref) { return Released(Convert(ref), ref); }
RVBool RVInternalRef::ConvertAndRelease(CFBooleanRef ref) { return Released(Convert(ref), ref); }
RVData RVInternalRef::ConvertAndRelease(CFDataRef ref) { return Released(Convert(ref), ref); }
RVDate RVInternalRef::ConvertAndRelease(CFDateRef ref) { return Released(Convert(ref), ref); }
RVDateFormatter RVInternalRef::ConvertAndRelease(CFDateFormatterRef ref) {
  return Released(Convert(ref), ref);
}
RVDictionary RVInternalRef::ConvertAndRelease(CFDictionaryRef ref) {
  return Released(Convert(ref), ref);
}
RVDictionary RVInternalRef::ConvertAndRelease(const void* ref) {
  return ConvertAndRelease(static_cast<CFDictionaryRef>(ref));
}
RVNumber RVInternalRef::ConvertAndRelease(CFNumberRef ref) { return Released(Convert(ref), ref); }
RVString RVInternalRef::ConvertAndRelease(CFStringRef ref) { return Released(Convert(ref), ref); }
RVValue RVInternalRef::ConvertToValueAndRelease(CFNumberRef ref) {
  return Released(ConvertToValue(ref), ref);
}
