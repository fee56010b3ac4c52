// The one table that decides which handle class fits a Foundation object.
// The factory, the typed getters, the class types of values and the Core
// Foundation type identifiers all read it.
#ifndef ROVANI_PLATFORM_RVHANDLETABLE_H
#define ROVANI_PLATFORM_RVHANDLETABLE_H

#import <Foundation/Foundation.h>

#include <typeinfo>

#include <Rovani/RVObject.h>

#include "Platform/CoreFoundation/RVCoreFoundation.h"

struct RVHandleKind {
  // The Foundation class; an object of it or of a subclass matches the row.
  Class foundationClass;
  // The handle class made for it; null where the library has none, and the
  // object is held by a plain RVObject.
  const std::type_info* handleType;
  // A new heap handle of that class holding the object (retained).
  RVObject* (*make)(id obj);
  // Its Core Foundation type identifier; 0 where Core Foundation has none.
  CFTypeID typeID;
};

// The first row, in the factory's binding order, whose class obj is a kind
// of; null for nil and for objects of no listed class.
const RVHandleKind* RVHandleKindFor(id obj);

// The handle class that fits obj: RVObject when no row has one.
const std::type_info& RVHandleTypeFor(id obj);

#endif
