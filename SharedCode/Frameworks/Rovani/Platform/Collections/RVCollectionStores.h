// The library's own immutable dictionaries, arrays and data. Each is an
// immutable NSDictionary, NSArray or NSData to everybody else, kept over a
// private mutable store, so that a handle that holds the only reference to
// one can change it in place instead of copying it (see RVChangedCopy.h).
#ifndef ROVANI_PLATFORM_RVCOLLECTIONSTORES_H
#define ROVANI_PLATFORM_RVCOLLECTIONSTORES_H

#import <Foundation/Foundation.h>

enum class RVStoreKind {
  kDictionary,  // an NSDictionary over an NSMutableDictionary
  kArray,       // an NSArray over an NSMutableArray
  kData,        // an NSData over an NSMutableData
};

// Whether obj's contents can be taken by an object of this kind: nil, or a
// kind of the kind's immutable class (NSDictionary, NSArray, NSData).
bool RVStoreKindFits(id obj, RVStoreKind kind);

// The mutable store inside obj when obj is the library's own object of this
// kind and the one reference the caller holds is its only reference (no
// other handle, no retain of anyone else, no autorelease pool): a change of
// that store can be seen by nobody. Nil otherwise.
id RVSolelyHeldStore(id obj, RVStoreKind kind);

// A new object of this kind (+1) holding a copy of the contents of
// contents (nil for none), which must fit the kind; *store is set to its
// mutable store.
id RVNewStoreObject(RVStoreKind kind, id contents, id* store);

#endif
