/// \file
/// Shared definitions of the public headers: the untyped object pointer,
/// forward declarations of the Foundation classes the handles hold, the
/// Core Foundation reference types, and the export macro.
///
/// Every public header compiles as plain C++17 (g++ or clang++) and as
/// Objective-C++. Foundation classes are forward-declared as `@class X` under
/// Objective-C and as `class X` otherwise; both mangle as `P1X`, so the
/// symbols a plain C++ caller links against are the ones the library exports.
/// This manual shows the plain C++ view of the headers.
#ifndef ROVANI_RVDEFINES_H
#define ROVANI_RVDEFINES_H

#include <cstdint>

/// Marks a class, function or variable as part of the library's exported
/// interface. The library is built with hidden visibility, so only what
/// carries this mark can be linked against (and only exported classes'
/// type information lets callers catch the library's thrown pointers).
#define RV_EXPORT __attribute__((visibility("default")))

#if defined(__OBJC__)
#import <Foundation/NSRange.h>
typedef id RVId;
#define RV_FORWARD_OBJC_CLASS(name) @class name;
#else
/// An untyped pointer to a Foundation object, possibly nil: the one thing a
/// handle holds. It is `id` in Objective-C++; this plain C++ spelling mangles
/// alike (a pointer to `objc_object`), so both kinds of caller link against
/// the same symbols. Messages to nil answer nil, false or 0.
typedef struct objc_object* RVId;
/// Declares the Foundation class \p name without defining it: `class name;`
/// in plain C++, `@class name;` in Objective-C++.
/// \param name the class name, such as `NSString`.
#define RV_FORWARD_OBJC_CLASS(name) class name;
/// The platform's range as plain C++ sees it: two pointer-sized fields,
/// location then length, laid out as Foundation's `NSRange`. RVRange
/// converts to and from it.
struct _NSRange {
  uintptr_t location;  ///< The first position.
  uintptr_t length;    ///< The number of positions.
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

/// \name Core Foundation reference types
/// A reference is the Foundation object itself (a reference to a string is
/// the `NSString`), so converting never copies. The platform has no Core
/// Foundation of its own: the types are declared here with the spelling, and
/// so the mangling, Core Foundation uses. RVInternalRef converts between
/// them and handles.
///@{
typedef const struct __CFString* CFStringRef;          ///< An immutable string (`NSString`).
typedef const struct __CFArray* CFArrayRef;            ///< An immutable array (`NSArray`).
typedef const struct __CFDictionary* CFDictionaryRef;  ///< An immutable dictionary (`NSDictionary`).
typedef const struct __CFData* CFDataRef;              ///< An immutable byte buffer (`NSData`).
typedef struct __CFData* CFMutableDataRef;             ///< A mutable byte buffer (`NSMutableData`).
typedef const struct __CFNumber* CFNumberRef;          ///< A number (`NSNumber`).
typedef const struct __CFBoolean* CFBooleanRef;        ///< A boolean (the library's `BoolNumber`).
typedef const struct __CFDate* CFDateRef;              ///< A point in time (`NSDate`).
typedef const struct __CFURL* CFURLRef;                ///< A URL (`NSURL`).
typedef struct __CFBundle* CFBundleRef;                ///< A bundle (`NSBundle`).
typedef struct __CFDateFormatter* CFDateFormatterRef;  ///< A date formatter (`NSDateFormatter`).
typedef const void* CFTypeRef;                         ///< Any reference.
///@}

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
