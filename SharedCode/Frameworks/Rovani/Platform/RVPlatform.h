// Private glue between the handles and GNUstep. Never installed.
#ifndef ROVANI_PLATFORM_RVPLATFORM_H
#define ROVANI_PLATFORM_RVPLATFORM_H

#import <Foundation/Foundation.h>

#include <typeinfo>

#include <Rovani/RVDefines.h>

// The class type of a dynamic type: its ABI name less the first character,
// cut to the part after the last blank. Computed once per type and interned,
// so equal class types are the same (immortal) string object.
NSString* RVClassTypeText(const std::type_info& type);

// The handle class RVObject::Create picks for obj (RVObject for anything
// else, nil included).
const std::type_info& RVHandleTypeFor(id obj);

// The platform encoding for one of the library's encoding codes; any other
// code logs "Unhandled string encoding" and gives UTF-8.
NSStringEncoding RVPlatformEncodingForCode(unsigned int code);

// Collections are never changed in place: change is applied to a mutable
// copy of held (an empty one for nil), and an immutable copy of the result is
// returned, owned by the caller (+1). GNUstep leaves an autoreleased
// reference to every element behind when it copies a collection; a pool of
// our own drains them, so a run of changes does not pile up references until
// the caller's pool drains. A platform exception raised by change reaches the
// caller without leaking the copy (the pool goes with the caller's, which
// also keeps the exception alive).
template <typename Change>
id RVChangedCopy(id held, Class mutableClass, Change change) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  id working = held != nil ? [held mutableCopy] : [[mutableClass alloc] init];
  @try {
    change(working);
  } @catch (NSException* exception) {
    [working release];
    @throw;
  }
  id changed = [working copy];
  [working release];
  [pool drain];
  return changed;
}

// Messages whose answer comes back in a floating-point or structure register
// are undefined on nil with this runtime (the nil method only clears the
// integer register), so these answer 0 for nil themselves.
inline double RVDoubleValue(id obj) { return obj ? [obj doubleValue] : 0.0; }
inline float RVFloatValue(id obj) { return obj ? [obj floatValue] : 0.0f; }

#endif
