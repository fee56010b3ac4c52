// The few Core Foundation calls the library needs, on top of GNUstep.
// A reference is the Foundation object itself. Private: hidden symbols,
// never installed, so a program that links a real Core Foundation does not
// clash with them.
#ifndef ROVANI_PLATFORM_RVCOREFOUNDATION_H
#define ROVANI_PLATFORM_RVCOREFOUNDATION_H

#include <cstdint>

#include <Rovani/RVDefines.h>

typedef unsigned long CFTypeID;
typedef long CFIndex;
typedef uint32_t CFStringEncoding;
typedef const struct __CFAllocator* CFAllocatorRef;

enum : CFStringEncoding { kCFStringEncodingUTF8 = 0x08000100 };

void CFRelease(CFTypeRef ref);
CFTypeRef CFRetain(CFTypeRef ref);

// Type identifiers, answered from the object's class. 0 for null or for an
// object of none of these kinds.
CFTypeID CFGetTypeID(CFTypeRef ref);
CFTypeID CFStringGetTypeID();
CFTypeID CFArrayGetTypeID();
CFTypeID CFDictionaryGetTypeID();
CFTypeID CFDataGetTypeID();
CFTypeID CFDateGetTypeID();
CFTypeID CFNumberGetTypeID();
CFTypeID CFBooleanGetTypeID();
CFTypeID CFURLGetTypeID();
CFTypeID CFBundleGetTypeID();
CFTypeID CFDateFormatterGetTypeID();

// Percent-escapes what is not legal in a URL and everything in
// legalToEscape, leaving alone what is in leaveUnescaped. Created (+1).
CFStringRef CFURLCreateStringByAddingPercentEscapes(CFAllocatorRef allocator, CFStringRef string,
                                                    CFStringRef leaveUnescaped,
                                                    CFStringRef legalToEscape,
                                                    CFStringEncoding encoding);

#endif
