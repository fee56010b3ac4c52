// How dictionaries, arrays and data change: never under anybody who holds
// the object, and in place when nobody else can see it.
#ifndef ROVANI_PLATFORM_RVCHANGEDCOPY_H
#define ROVANI_PLATFORM_RVCHANGEDCOPY_H

#import <Foundation/Foundation.h>

#include <Rovani/RVObject.h>

#include "Platform/Collections/RVCollectionStores.h"
#include "Platform/Runtime/RVOwned.h"

// A handle always holds an immutable object. When it holds one of the
// library's own (RVCollectionStores.h) and its reference is the only one,
// change is applied to that object's store in place: a pointer nobody
// retained is invalid once the handle changes anyway, so the difference
// cannot be seen. Otherwise the contents are copied once into a new object
// of the library's own, change is applied to it, and the handle holds it in
// place of the old object, which whoever else holds it sees unchanged.
//
// argument is the object change puts into the collection, if any: when it
// is the held object itself, the change copies, so that the collection
// holds its former self rather than itself.
//
// A change in place is one platform message that checks its arguments
// before it changes anything; a change of many steps (adding the entries of
// another dictionary) stages what can raise before it reaches this function,
// so that whatever raises leaves the handle's value as it was. A change of a
// copy that raises loses the copy and leaves the handle alone: the owners
// below release it on the way out, and the exception reaches the caller.
//
// GNUstep leaves an autoreleased reference to every element behind when it
// copies a collection; a pool of our own drains them, so a run of changes
// does not pile up references until the caller's pool drains. On a raise the
// pool is not drained here: it goes with the caller's, which also keeps the
// exception alive.
template <typename Change>
void RVChangeHeld(RVObject& handle, RVStoreKind kind, Change change, id argument = nil) {
  id held = handle.Ref();
  id store = RVSolelyHeldStore(held, kind);
  if (store != nil && argument != held) {
    change(store);
    return;
  }
  // Only copying contents leaves references behind; a first change has none.
  NSAutoreleasePool* pool = held != nil ? [[NSAutoreleasePool alloc] init] : nil;
  RVOwned<> changed;
  if (RVStoreKindFits(held, kind)) {
    changed = RVAdopt(RVNewStoreObject(kind, held, &store));
    change(store);
  } else {
    // An object of another class than the handle's (a handle takes any
    // object it is given): its own mutable copy gets the change, which it
    // mostly refuses by raising, and the handle holds an immutable copy of
    // the result.
    RVOwned<> working = RVAdopt([held mutableCopy]);
    change(working.Get());
    changed = RVAdopt([working.Get() copy]);
  }
  handle = changed.Get();
  changed.Reset();
  [pool drain];
}

#endif
