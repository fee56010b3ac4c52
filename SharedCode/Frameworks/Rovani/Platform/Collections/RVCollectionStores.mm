#import <Foundation/Foundation.h>

#include <objc/runtime.h>

#include <new>

#include "Platform/Collections/RVCollectionStores.h"
#include "Platform/Runtime/RVOwned.h"

// Three immutable classes of the platform's class clusters, each made of
// the cluster's primitive methods over a mutable store that only the
// library changes. To everybody else they are what the platform's own
// immutable objects are: not a kind of the mutable class, answering none of
// its changing messages, copied by a retain, mutably copied into a real
// mutable object, archived as the parent class. Everything else (equality,
// hashing, descriptions, property lists) comes from the parent class over
// the primitives.
//
// -class answers the object's own class, whose layout is the object's: key-
// value observing makes its subclass of [object class], swaps the object
// into it, and swaps it back to [object class] when the last observer goes.
// A class of the platform's here (another layout, other primitives) would
// leave the object reading its bytes as somebody else's. While observed,
// the object is of that subclass, not of its own class, so it is never
// changed in place: a handle copies it.
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
// could replace. The bytes come zeroed; the initialisers construct the slots
// in them and -dealloc destroys them, which releases what they own.
namespace {

struct EnumeratorSlots {
  RVOwned<> owner;
  RVOwned<NSEnumerator*> inner;
};

template <typename Store>
struct StoreSlots {
  RVOwned<Store> store;
  unsigned long mutations = 0;  // changes made in place
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
    new (&SlotsOf<EnumeratorSlots>(self))
        EnumeratorSlots{RVOwned<>::Retain(owner), RVOwned<NSEnumerator*>::Retain(inner)};
  }
  return self;
}
- (id)nextObject {
  return [SlotsOf<EnumeratorSlots>(self).inner.Get() nextObject];
}
- (void)dealloc {
  SlotsOf<EnumeratorSlots>(self).~EnumeratorSlots();
  [super dealloc];
}
@end

static NSEnumerator* OwnedEnumerator(id owner, NSEnumerator* inner) {
  return RVAdopt([[RVStoreEnumerator alloc] initWithOwner:owner enumerator:inner]).Autorelease();
}

using DictionarySlots = StoreSlots<NSMutableDictionary*>;
using ArraySlots = StoreSlots<NSMutableArray*>;
using DataSlots = StoreSlots<NSMutableData*>;

// The methods every kind shares: its store adopted (replaced, should an
// initialiser run twice), its store's own mutable copy, a retain for a copy,
// its parent class for archives, its store released with it. -class is
// NSObject's: the class the object is of.
#define RV_STORE_OBJECT_METHODS(Slots, Parent)                           \
  RV_ALLOCATE_WITH_SLOTS(Slots)                                          \
  -(id)initWithStore : (id)store {                                       \
    Slots& slots = SlotsOf<Slots>(self);                                 \
    if (slots.store) slots.~Slots();                                     \
    new (&slots) Slots{decltype(slots.store)::Adopt(store)};             \
    return self;                                                         \
  }                                                                      \
  -(id)copyWithZone : (NSZone*)zone {                                    \
    return [self retain];                                                \
  }                                                                      \
  -(id)mutableCopyWithZone : (NSZone*)zone {                             \
    return [SlotsOf<Slots>(self).store.Get() mutableCopyWithZone:zone];  \
  }                                                                      \
  -(Class)classForCoder {                                                \
    return [Parent class];                                               \
  }                                                                      \
  -(void)dealloc {                                                       \
    SlotsOf<Slots>(self).~Slots();                                       \
    [super dealloc];                                                     \
  }

// Fast enumeration is the store's, under the object's own mutation count.
#define RV_STORE_FAST_ENUMERATION(Slots)                                                  \
  -(NSUInteger)countByEnumeratingWithState : (NSFastEnumerationState*)state               \
                                    objects : (__unsafe_unretained id[])buffer            \
                                      count : (NSUInteger)length {                        \
    Slots& slots = SlotsOf<Slots>(self);                                                  \
    NSUInteger count = [slots.store.Get() countByEnumeratingWithState:state               \
                                                              objects:buffer              \
                                                                count:length];            \
    state->mutationsPtr = &slots.mutations;                                               \
    return count;                                                                         \
  }

@interface RVDictionaryObject : NSDictionary
@end

@implementation RVDictionaryObject
RV_STORE_OBJECT_METHODS(DictionarySlots, NSDictionary)
RV_STORE_FAST_ENUMERATION(DictionarySlots)
- (id)initWithObjects:(const id[])objects forKeys:(const id<NSCopying>[])keys count:(NSUInteger)count {
  return [self initWithStore:[[NSMutableDictionary alloc] initWithObjects:objects
                                                                  forKeys:keys
                                                                    count:count]];
}
- (NSUInteger)count {
  return [SlotsOf<DictionarySlots>(self).store.Get() count];
}
- (id)objectForKey:(id)key {
  return [SlotsOf<DictionarySlots>(self).store.Get() objectForKey:key];
}
- (NSEnumerator*)keyEnumerator {
  return OwnedEnumerator(self, [SlotsOf<DictionarySlots>(self).store.Get() keyEnumerator]);
}
- (NSEnumerator*)objectEnumerator {
  return OwnedEnumerator(self, [SlotsOf<DictionarySlots>(self).store.Get() objectEnumerator]);
}
@end

@interface RVArrayObject : NSArray
@end

@implementation RVArrayObject
RV_STORE_OBJECT_METHODS(ArraySlots, NSArray)
RV_STORE_FAST_ENUMERATION(ArraySlots)
- (id)initWithObjects:(const id[])objects count:(NSUInteger)count {
  return [self initWithStore:[[NSMutableArray alloc] initWithObjects:objects count:count]];
}
- (NSUInteger)count {
  return [SlotsOf<ArraySlots>(self).store.Get() count];
}
- (id)objectAtIndex:(NSUInteger)index {
  return [SlotsOf<ArraySlots>(self).store.Get() objectAtIndex:index];
}
- (void)getObjects:(__unsafe_unretained id[])objects range:(NSRange)range {
  [SlotsOf<ArraySlots>(self).store.Get() getObjects:objects range:range];
}
- (NSEnumerator*)objectEnumerator {
  return OwnedEnumerator(self, [SlotsOf<ArraySlots>(self).store.Get() objectEnumerator]);
}
- (NSEnumerator*)reverseObjectEnumerator {
  return OwnedEnumerator(self, [SlotsOf<ArraySlots>(self).store.Get() reverseObjectEnumerator]);
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
RV_STORE_OBJECT_METHODS(DataSlots, NSData)
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
  return [SlotsOf<DataSlots>(self).store.Get() length];
}
- (const void*)bytes {
  return [SlotsOf<DataSlots>(self).store.Get() bytes];
}
- (void)getBytes:(void*)buffer range:(NSRange)range {
  [SlotsOf<DataSlots>(self).store.Get() getBytes:buffer range:range];
}
@end

namespace {

struct StoreClasses {
  Class own[3];
  Class parent[3];
  StoreClasses()
      : own{[RVDictionaryObject class], [RVArrayObject class], [RVDataObject class]},
        parent{[NSDictionary class], [NSArray class], [NSData class]} {}
};

// Looked up on first use, after the runtime has loaded the classes.
const StoreClasses& Classes() {
  static const StoreClasses classes;
  return classes;
}

}  // namespace

bool RVStoreKindFits(id obj, RVStoreKind kind) {
  return obj == nil || [obj isKindOfClass:Classes().parent[static_cast<int>(kind)]];
}

namespace {

template <typename Slots>
id StoreForChange(id obj) {
  Slots& slots = SlotsOf<Slots>(obj);
  ++slots.mutations;
  return slots.store.Get();
}

}  // namespace

id RVSolelyHeldStore(id obj, RVStoreKind kind) {
  if (obj == nil || object_getClass(obj) != Classes().own[static_cast<int>(kind)]) return nil;
  if ([obj retainCount] != 1) return nil;
  switch (kind) {
    case RVStoreKind::kDictionary:
      return StoreForChange<DictionarySlots>(obj);
    case RVStoreKind::kArray:
      return StoreForChange<ArraySlots>(obj);
    case RVStoreKind::kData:
      return StoreForChange<DataSlots>(obj);
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
