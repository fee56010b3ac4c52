#import <Foundation/Foundation.h>

#include <objc/runtime.h>

#include "Platform/Collections/RVCollectionStores.h"

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

// With this runtime the compiler gives every class implementation and every
// class it messages a global symbol of its own, whatever the visibility the
// library builds with; these classes are the library's private business, so
// their symbols are hidden here.
#define RV_HIDDEN_CLASS_SYMBOLS(name) \
  asm(".hidden __objc_class_name_" #name "\n.hidden __objc_class_ref_" #name);
RV_HIDDEN_CLASS_SYMBOLS(RVStoreEnumerator)
RV_HIDDEN_CLASS_SYMBOLS(RVDictionaryObject)
RV_HIDDEN_CLASS_SYMBOLS(RVArrayObject)
RV_HIDDEN_CLASS_SYMBOLS(RVDataObject)

// What each object keeps lives in bytes allocated beyond the object itself,
// not in instance variables, which key-value coding would find by name and
// could replace (-class answers the platform's class, so asking the class
// whether its variables may be reached directly asks the wrong one).
namespace {

struct EnumeratorSlots {
  id owner;
  NSEnumerator* inner;
};

template <typename Store>
struct StoreSlots {
  Store store;
  unsigned long mutations;  // changes made in place
};

template <typename Slots>
Slots& SlotsOf(id obj) {
  return *static_cast<Slots*>(object_getIndexedIvars(obj));
}

}  // namespace

#define RV_ALLOCATE_WITH_SLOTS(Slots)                 \
  +(id)allocWithZone : (NSZone*)zone {                 \
    return NSAllocateObject(self, sizeof(Slots), zone); \
  }

@interface RVStoreEnumerator : NSEnumerator
- (id)initWithOwner:(id)owner enumerator:(NSEnumerator*)inner;
@end

@implementation RVStoreEnumerator
RV_ALLOCATE_WITH_SLOTS(EnumeratorSlots)
- (id)initWithOwner:(id)owner enumerator:(NSEnumerator*)inner {
  if ((self = [super init]) != nil) {
    SlotsOf<EnumeratorSlots>(self).owner = [owner retain];
    SlotsOf<EnumeratorSlots>(self).inner = [inner retain];
  }
  return self;
}
- (id)nextObject {
  return [SlotsOf<EnumeratorSlots>(self).inner nextObject];
}
- (void)dealloc {
  [SlotsOf<EnumeratorSlots>(self).inner release];
  [SlotsOf<EnumeratorSlots>(self).owner release];
  [super dealloc];
}
@end

// The platform's own class of an immutable object of each kind: what an
// immutable copy of a mutable one is.
static Class PlatformClass(RVStoreKind kind);

static NSEnumerator* OwnedEnumerator(id owner, NSEnumerator* inner) {
  return [[[RVStoreEnumerator alloc] initWithOwner:owner enumerator:inner] autorelease];
}

using DictionarySlots = StoreSlots<NSMutableDictionary*>;
using ArraySlots = StoreSlots<NSMutableArray*>;
using DataSlots = StoreSlots<NSMutableData*>;

// The methods every kind shares: its store's own mutable copy, a retain
// for a copy, its parent class for archives, its store released with it.
#define RV_STORE_OBJECT_METHODS(Slots, Kind, Parent)                  \
  RV_ALLOCATE_WITH_SLOTS(Slots)                                        \
  -(Class) class {                                                     \
    return PlatformClass(Kind);                                        \
  }                                                                    \
  -(id)initWithStore : (id)store {                                     \
    SlotsOf<Slots>(self).store = store;                                \
    return self;                                                       \
  }                                                                    \
  -(id)copyWithZone : (NSZone*)zone {                                  \
    return [self retain];                                              \
  }                                                                    \
  -(id)mutableCopyWithZone : (NSZone*)zone {                           \
    return [SlotsOf<Slots>(self).store mutableCopyWithZone:zone];      \
  }                                                                    \
  -(Class)classForCoder {                                              \
    return [Parent class];                                             \
  }                                                                    \
  -(void)dealloc {                                                     \
    [SlotsOf<Slots>(self).store release];                              \
    [super dealloc];                                                   \
  }

// Fast enumeration is the store's, under the object's own mutation count.
#define RV_STORE_FAST_ENUMERATION(Slots)                                                  \
  -(NSUInteger)countByEnumeratingWithState : (NSFastEnumerationState*)state               \
                                    objects : (__unsafe_unretained id[])buffer            \
                                      count : (NSUInteger)length {                        \
    Slots& slots = SlotsOf<Slots>(self);                                                  \
    NSUInteger count = [slots.store countByEnumeratingWithState:state                     \
                                                        objects:buffer                    \
                                                          count:length];                  \
    state->mutationsPtr = &slots.mutations;                                               \
    return count;                                                                         \
  }

@interface RVDictionaryObject : NSDictionary
@end

@implementation RVDictionaryObject
RV_STORE_OBJECT_METHODS(DictionarySlots, RVStoreKind::kDictionary, NSDictionary)
RV_STORE_FAST_ENUMERATION(DictionarySlots)
- (id)initWithObjects:(const id[])objects forKeys:(const id<NSCopying>[])keys count:(NSUInteger)count {
  return [self initWithStore:[[NSMutableDictionary alloc] initWithObjects:objects
                                                                  forKeys:keys
                                                                    count:count]];
}
- (NSUInteger)count {
  return [SlotsOf<DictionarySlots>(self).store count];
}
- (id)objectForKey:(id)key {
  return [SlotsOf<DictionarySlots>(self).store objectForKey:key];
}
- (NSEnumerator*)keyEnumerator {
  return OwnedEnumerator(self, [SlotsOf<DictionarySlots>(self).store keyEnumerator]);
}
- (NSEnumerator*)objectEnumerator {
  return OwnedEnumerator(self, [SlotsOf<DictionarySlots>(self).store objectEnumerator]);
}
@end

@interface RVArrayObject : NSArray
@end

@implementation RVArrayObject
RV_STORE_OBJECT_METHODS(ArraySlots, RVStoreKind::kArray, NSArray)
RV_STORE_FAST_ENUMERATION(ArraySlots)
- (id)initWithObjects:(const id[])objects count:(NSUInteger)count {
  return [self initWithStore:[[NSMutableArray alloc] initWithObjects:objects count:count]];
}
- (NSUInteger)count {
  return [SlotsOf<ArraySlots>(self).store count];
}
- (id)objectAtIndex:(NSUInteger)index {
  return [SlotsOf<ArraySlots>(self).store objectAtIndex:index];
}
- (void)getObjects:(__unsafe_unretained id[])objects range:(NSRange)range {
  [SlotsOf<ArraySlots>(self).store getObjects:objects range:range];
}
- (NSEnumerator*)objectEnumerator {
  return OwnedEnumerator(self, [SlotsOf<ArraySlots>(self).store objectEnumerator]);
}
- (NSEnumerator*)reverseObjectEnumerator {
  return OwnedEnumerator(self, [SlotsOf<ArraySlots>(self).store reverseObjectEnumerator]);
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
@interface RVDataObject : NSData
@end

@implementation RVDataObject
RV_STORE_OBJECT_METHODS(DataSlots, RVStoreKind::kData, NSData)
- (id)initWithBytes:(const void*)bytes length:(NSUInteger)length {
  return [self initWithStore:[[NSMutableData alloc] initWithBytes:bytes length:length]];
}
- (id)initWithBytesNoCopy:(void*)bytes length:(NSUInteger)length freeWhenDone:(BOOL)shouldFree {
  self = [self initWithBytes:bytes length:length];
  if (shouldFree) free(bytes);
  return self;
}
- (id)init {
  return [self initWithBytes:NULL length:0];
}
- (NSUInteger)length {
  return [SlotsOf<DataSlots>(self).store length];
}
- (const void*)bytes {
  return [SlotsOf<DataSlots>(self).store bytes];
}
- (void)getBytes:(void*)buffer range:(NSRange)range {
  [SlotsOf<DataSlots>(self).store getBytes:buffer range:range];
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

static Class PlatformClass(RVStoreKind kind) { return Classes().platform[static_cast<int>(kind)]; }

bool RVStoreKindFits(id obj, RVStoreKind kind) {
  return obj == nil || [obj isKindOfClass:Classes().parent[static_cast<int>(kind)]];
}

id RVSolelyHeldStore(id obj, RVStoreKind kind) {
  if (obj == nil || object_getClass(obj) != Classes().own[static_cast<int>(kind)]) return nil;
  if ([obj retainCount] != 1) return nil;
  // Every kind keeps the same two slots, the store first.
  StoreSlots<id>& slots = SlotsOf<StoreSlots<id>>(obj);
  ++slots.mutations;
  return slots.store;
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
