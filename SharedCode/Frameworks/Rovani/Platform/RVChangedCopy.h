// Copy, change, replace: how collections and data change without ever
// changing an object another handle may share.
#ifndef ROVANI_PLATFORM_RVCHANGEDCOPY_H
#define ROVANI_PLATFORM_RVCHANGEDCOPY_H

#import <Foundation/Foundation.h>

#include <Rovani/RVObject.h>

// The change is applied to a mutable copy of held (an empty one for nil),
// and an immutable copy of the result is returned, owned by the caller (+1).
// GNUstep leaves an autoreleased reference to every element behind when it
// copies a collection; a pool of our own drains them, so a run of changes
// does not pile up references until the caller's pool drains. A platform
// exception raised by change reaches the caller without leaking the copy
// (the pool goes with the caller's, which also keeps the exception alive).
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

// The handle then holds the changed copy in place of its object.
template <typename Change>
void RVReplaceWithChanged(RVObject& handle, Class mutableClass, Change change) {
  id changed = RVChangedCopy(handle.Ref(), mutableClass, change);
  handle = changed;
  [changed release];
}

#endif
