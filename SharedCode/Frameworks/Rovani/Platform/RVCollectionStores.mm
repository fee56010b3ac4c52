#import <Foundation/Foundation.h>

#include <objc/runtime.h>

#include "Platform/RVCollectionStores.h"

// Three immutable classes of the platform's class clusters, each made of
// the cluster's primitive methods over a mutable store that only the
// library changes. To everybody else they are what the platform's own
// immutable objects are: not a kind of the mutable class, answering none of
// its changing messages, copied by a retain, mutably copied into a real
// mutable object, archived as the parent class. -class answers the class of
// the platform's own immutable object of that kind, as the private
// subclasses of key-value observing do: code that compares classes, or
// makes another object of the same class, meets what it met before these
// objects existed. Everything else (equality, hashing, descriptions,
// property lists) comes from the parent class over the primitives.
//
// The initialisers set the store alone: the parents' own initialisers come
// back to the primitive ones, and NSObject's has nothing to do.
//
// Their enumerators retain the object they walk, as the platform's own do:
// while one is alive the object is not solely held, so it is never changed
// under it. Fast enumeration is the store's, with a mutation count of the
// object's own that every change in place moves on: a loop over an object
// that nobody retained, whose handle changes it inside the loop, ends with
// the platform's mutation exception instead of reading a changed store.

@interface RVStoreEnumerator : NSEnumerator {
  id owner;
  NSEnumerator* inner;
}
- (id)initWithOwner:(id)anOwner enumerator:(NSEnumerator*)anEnumerator;
@end

@implementation RVStoreEnumerator
- (id)initWithOwner:(id)anOwner enumerator:(NSEnumerator*)anEnumerator {
  if ((self = [super init]) != nil) {
    owner = [anOwner retain];
    inner = [anEnumerator retain];
  }
  return self;
}
- (id)nextObject {
  return [inner nextObject];
}
- (void)dealloc {
  [inner release];
  [owner release];
  [super dealloc];
}
@end

// The platform's own class of an immutable object of each kind: what an
// immutable copy of a mutable one is.
static Class PlatformClass(int kind);

static NSEnumerator* OwnedEnumerator(id owner, NSEnumerator* inner) {
  return [[[RVStoreEnumerator alloc] initWithOwner:owner enumerator:inner] autorelease];
}

@interface RVDictionaryObject : NSDictionary {
 @public
  NSMutableDictionary* store;
  unsigned long mutations;  // changes made in place
}
@end

@implementation RVDictionaryObject
- (Class)class {
  return PlatformClass(0);
}
- (id)initWithObjects:(const id[])objects forKeys:(const id<NSCopying>[])keys count:(NSUInteger)count {
  store = [[NSMutableDictionary alloc] initWithObjects:objects forKeys:keys count:count];
  return self;
}
- (id)initWithStore:(NSMutableDictionary*)aStore {
  store = aStore;
  return self;
}
- (NSUInteger)count {
  return [store count];
}
- (id)objectForKey:(id)key {
  return [store objectForKey:key];
}
- (NSEnumerator*)keyEnumerator {
  return OwnedEnumerator(self, [store keyEnumerator]);
}
- (NSEnumerator*)objectEnumerator {
  return OwnedEnumerator(self, [store objectEnumerator]);
}
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(__unsafe_unretained id[])buffer
                                    count:(NSUInteger)length {
  NSUInteger count = [store countByEnumeratingWithState:state objects:buffer count:length];
  state->mutationsPtr = &mutations;
  return count;
}
- (id)copyWithZone:(NSZone*)zone {
  return [self retain];
}
- (id)mutableCopyWithZone:(NSZone*)zone {
  return [store mutableCopyWithZone:zone];
}
- (Class)classForCoder {
  return [NSDictionary class];
}
- (void)dealloc {
  [store release];
  [super dealloc];
}
@end

@interface RVArrayObject : NSArray {
 @public
  NSMutableArray* store;
  unsigned long mutations;  // changes made in place
}
@end

@implementation RVArrayObject
- (Class)class {
  return PlatformClass(1);
}
- (id)initWithObjects:(const id[])objects count:(NSUInteger)count {
  store = [[NSMutableArray alloc] initWithObjects:objects count:count];
  return self;
}
- (id)initWithStore:(NSMutableArray*)aStore {
  store = aStore;
  return self;
}
- (NSUInteger)count {
  return [store count];
}
- (id)objectAtIndex:(NSUInteger)index {
  return [store objectAtIndex:index];
}
- (void)getObjects:(__unsafe_unretained id[])objects range:(NSRange)range {
  [store getObjects:objects range:range];
}
- (NSEnumerator*)objectEnumerator {
  return OwnedEnumerator(self, [store objectEnumerator]);
}
- (NSEnumerator*)reverseObjectEnumerator {
  return OwnedEnumerator(self, [store reverseObjectEnumerator]);
}
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(__unsafe_unretained id[])buffer
                                    count:(NSUInteger)length {
  NSUInteger count = [store countByEnumeratingWithState:state objects:buffer count:length];
  state->mutationsPtr = &mutations;
  return count;
}
- (id)copyWithZone:(NSZone*)zone {
  return [self retain];
}
- (id)mutableCopyWithZone:(NSZone*)zone {
  return [store mutableCopyWithZone:zone];
}
- (Class)classForCoder {
  return [NSArray class];
}
- (void)dealloc {
  [store release];
  [super dealloc];
}
@end

// Data: bytes in place. A pointer from Bytes() is the store's buffer, which
// an append in place may move. That is only possible when the handle holds
// the one reference to the object, so whoever read the pointer held no
// reference of their own; and a pointer into an object that one does not
// hold is invalid once its handle changes, whether the change copies (the
// old object is freed) or not. A caller that keeps the object (by copying
// the handle, or retaining it) forces the next change to copy, and its
// pointer stays good.
@interface RVDataObject : NSData {
 @public
  NSMutableData* store;
}
@end

@implementation RVDataObject
- (Class)class {
  return PlatformClass(2);
}
- (id)initWithBytes:(const void*)bytes length:(NSUInteger)length {
  store = [[NSMutableData alloc] initWithBytes:bytes length:length];
  return self;
}
- (id)initWithBytesNoCopy:(void*)bytes length:(NSUInteger)length freeWhenDone:(BOOL)shouldFree {
  self = [self initWithBytes:bytes length:length];
  if (shouldFree) free(bytes);
  return self;
}
- (id)init {
  return [self initWithBytes:NULL length:0];
}
- (id)initWithStore:(NSMutableData*)aStore {
  store = aStore;
  return self;
}
- (NSUInteger)length {
  return [store length];
}
- (const void*)bytes {
  return [store bytes];
}
- (void)getBytes:(void*)buffer range:(NSRange)range {
  [store getBytes:buffer range:range];
}
- (id)copyWithZone:(NSZone*)zone {
  return [self retain];
}
- (id)mutableCopyWithZone:(NSZone*)zone {
  return [store mutableCopyWithZone:zone];
}
- (Class)classForCoder {
  return [NSData class];
}
- (void)dealloc {
  [store release];
  [super dealloc];
}
@end

namespace {

template <typename Mutable>
Class ClassOfImmutableCopy(Mutable* made) {
  id copy = [made copy];
  Class result = object_getClass(copy);
  [copy release];
  [made release];
  return result;
}

struct StoreClasses {
  Class own[3];
  Class parent[3];
  Class platform[3];
  StoreClasses()
      : own{[RVDictionaryObject class], [RVArrayObject class], [RVDataObject class]},
        parent{[NSDictionary class], [NSArray class], [NSData class]},
        platform{ClassOfImmutableCopy([[NSMutableDictionary alloc] initWithObjectsAndKeys:@"", @"", nil]),
                 ClassOfImmutableCopy([[NSMutableArray alloc] initWithObjects:@"", nil]),
                 ClassOfImmutableCopy([[NSMutableData alloc] initWithLength:1])} {}
};

// Looked up on first use, after the runtime has loaded the classes.
const StoreClasses& Classes() {
  static const StoreClasses classes;
  return classes;
}

}  // namespace

static Class PlatformClass(int kind) { return Classes().platform[kind]; }

bool RVStoreKindFits(id obj, RVStoreKind kind) {
  return obj == nil || [obj isKindOfClass:Classes().parent[static_cast<int>(kind)]];
}

id RVSolelyHeldStore(id obj, RVStoreKind kind) {
  if (obj == nil || object_getClass(obj) != Classes().own[static_cast<int>(kind)]) return nil;
  if ([obj retainCount] != 1) return nil;
  switch (kind) {
    case RVStoreKind::kDictionary: {
      RVDictionaryObject* dictionary = static_cast<RVDictionaryObject*>(obj);
      ++dictionary->mutations;
      return dictionary->store;
    }
    case RVStoreKind::kArray: {
      RVArrayObject* array = static_cast<RVArrayObject*>(obj);
      ++array->mutations;
      return array->store;
    }
    case RVStoreKind::kData:
      return static_cast<RVDataObject*>(obj)->store;
  }
  return nil;
}

id RVNewStoreObject(RVStoreKind kind, id contents, id* store) {
  switch (kind) {
    case RVStoreKind::kDictionary:
      *store = contents != nil ? [contents mutableCopy] : [[NSMutableDictionary alloc] init];
      return [[RVDictionaryObject alloc] initWithStore:*store];
    case RVStoreKind::kArray:
      *store = contents != nil ? [contents mutableCopy] : [[NSMutableArray alloc] init];
      return [[RVArrayObject alloc] initWithStore:*store];
    case RVStoreKind::kData:
      *store = contents != nil ? [contents mutableCopy] : [[NSMutableData alloc] init];
      return [[RVDataObject alloc] initWithStore:*store];
  }
  *store = nil;
  return nil;
}
