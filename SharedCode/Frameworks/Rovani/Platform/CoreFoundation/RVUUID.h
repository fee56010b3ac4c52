// UUIDs for the private Core Foundation layer, made with libuuid. A UUID
// reference is a Foundation object like every other reference of the layer:
// CFRelease releases it. Private: hidden symbols, never installed.
#ifndef ROVANI_PLATFORM_RVUUID_H
#define ROVANI_PLATFORM_RVUUID_H

#include "Platform/CoreFoundation/RVCoreFoundation.h"

typedef const struct __CFUUID* CFUUIDRef;

// A new random UUID (+1). The allocator is ignored (null is the default).
CFUUIDRef CFUUIDCreate(CFAllocatorRef allocator);
// Its canonical text (+1): 36 characters, upper-case hexadecimal in groups of
// 8-4-4-4-12 separated by "-". Null for a null UUID.
CFStringRef CFUUIDCreateString(CFAllocatorRef allocator, CFUUIDRef uuid);

#endif
