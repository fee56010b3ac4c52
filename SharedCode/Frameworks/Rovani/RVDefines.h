// Shared definitions of the public headers: the untyped object pointer,
// forward declarations of the Foundation classes the handles hold, the
// Core Foundation reference types, and the export macro.
//
// Every public header compiles as plain C++17 (g++ or clang++) and as
// Objective-C++. Foundation classes are forward-declared as `@class X` under
// Objective-C and as `class X` otherwise; both mangle as `P1X`, so the
// symbols a plain C++ caller links against are the ones the library exports.
#ifndef ROVANI_RVDEFINES_H
#define ROVANI_RVDEFINES_H

#include <cstdint>

#define RV_EXPORT __attribute__((visibility("default")))

#if defined(__OBJC__)
#import <Foundation/NSRange.h>
typedef id RVId;
#define RV_FORWARD_OBJC_CLASS(name) @class name;
#else
// `id` mangles as a pointer to `objc_object`; this spelling mangles alike.
typedef struct objc_object* RVId;
#define RV_FORWARD_OBJC_CLASS(name) class name;
// Two fields, location then length, laid out as the platform's range.
struct _NSRange {
  uintptr_t location;
  uintptr_t length;
};
#endif

RV_FORWARD_OBJC_CLASS(NSObject)
RV_FORWARD_OBJC_CLASS(NSString)
RV_FORWARD_OBJC_CLASS(NSNumber)
RV_FORWARD_OBJC_CLASS(NSValue)
RV_FORWARD_OBJC_CLASS(NSDate)
RV_FORWARD_OBJC_CLASS(NSDateFormatter)
RV_FORWARD_OBJC_CLASS(NSData)
RV_FORWARD_OBJC_CLASS(NSDictionary)
RV_FORWARD_OBJC_CLASS(NSArray)
RV_FORWARD_OBJC_CLASS(NSEnumerator)
RV_FORWARD_OBJC_CLASS(NSURL)
RV_FORWARD_OBJC_CLASS(NSError)
RV_FORWARD_OBJC_CLASS(NSBundle)
RV_FORWARD_OBJC_CLASS(NSUserDefaults)

// Core Foundation reference types. A reference is the Foundation object
// itself; the platform has no Core Foundation of its own, so the types are
// declared here with the spelling (and so the mangling) Core Foundation uses.
typedef const struct __CFString* CFStringRef;
typedef const struct __CFArray* CFArrayRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef const struct __CFData* CFDataRef;
typedef struct __CFData* CFMutableDataRef;
typedef const struct __CFNumber* CFNumberRef;
typedef const struct __CFBoolean* CFBooleanRef;
typedef const struct __CFDate* CFDateRef;
typedef const struct __CFURL* CFURLRef;
typedef struct __CFBundle* CFBundleRef;
typedef struct __CFDateFormatter* CFDateFormatterRef;
typedef const void* CFTypeRef;

class RVObject;
class RVString;
class RVRange;
class RVNumber;
class RVBool;
class RVValue;
class RVData;
class RVArray;
class RVDictionary;
class RVEnumerator;
class RVError;
class RVDate;
class RVDateFormatter;
class RVURL;
class RVBundle;
class RVUserDefaults;

#endif
