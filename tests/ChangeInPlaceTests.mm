#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

#include <Rovani/Rovani.h>

// Dictionaries, arrays and data change in place when their handle is the only
// holder of the object, and copy otherwise. These tests hold the object in
// every other way there is and check that the holder never sees a change,
// and that the object is an immutable one to whoever looks at it.

// A dictionary whose third value raises when it is read, and data whose
// bytes raise: other people's classes, which a handle may hold or be given.
@interface ThirdValueRaisingDictionary : NSDictionary {
  NSDictionary* entries_;
  int reads_;
}
@end

@implementation ThirdValueRaisingDictionary
- (id)initWithObjects:(const id[])objects forKeys:(const id<NSCopying>[])keys count:(NSUInteger)count {
  entries_ = [[NSDictionary alloc] initWithObjects:objects forKeys:keys count:count];
  return self;
}
- (void)dealloc {
  [entries_ release];
  [super dealloc];
}
- (NSUInteger)count { return [entries_ count]; }
- (NSEnumerator*)keyEnumerator { return [entries_ keyEnumerator]; }
- (id)objectForKey:(id)key {
  if (++reads_ == 3) [NSException raise:NSGenericException format:@"third value"];
  return [entries_ objectForKey:key];
}
@end

@interface BytesRaisingData : NSData
@end

@implementation BytesRaisingData
- (id)init { return self; }
- (NSUInteger)length { return 4; }
- (const void*)bytes {
  [NSException raise:NSGenericException format:@"bytes"];
  return NULL;
}
@end

namespace {

struct DictionaryKind {
  using Handle = RVDictionary;
  static void Change(RVDictionary& d, int i) {
    d.SetObjectForKey(RVNumber(i), RVString::StringWithFormat("k%d", i));
  }
  static Class Immutable() { return [NSDictionary class]; }
  static Class Mutable() { return [NSMutableDictionary class]; }
  static SEL Changing() { return @selector(setObject:forKey:); }
  static void ChangeMutable(id m) { [m setObject:@"v" forKey:@"new"]; }
  static RVId Bridged(id o) { return RVInternalRef::Convert(static_cast<CFDictionaryRef>(o)).Ref(); }
  static NSString* Observed() { return @"count"; }
};

struct ArrayKind {
  using Handle = RVArray;
  static void Change(RVArray& a, int i) { a.AddObject(RVNumber(i)); }
  static Class Immutable() { return [NSArray class]; }
  static Class Mutable() { return [NSMutableArray class]; }
  static SEL Changing() { return @selector(addObject:); }
  static void ChangeMutable(id m) { [m addObject:@"new"]; }
  static RVId Bridged(id o) { return RVInternalRef::Convert(static_cast<CFArrayRef>(o)).Ref(); }
  static NSString* Observed() { return @"count"; }
};

struct DataKind {
  using Handle = RVData;
  static void Change(RVData& d, int i) { d.AppendString(RVString::StringWithFormat("%d,", i)); }
  static Class Immutable() { return [NSData class]; }
  static Class Mutable() { return [NSMutableData class]; }
  static SEL Changing() { return @selector(appendData:); }
  static void ChangeMutable(id m) { [m appendBytes:"new" length:3]; }
  static RVId Bridged(id o) { return RVInternalRef::Convert(static_cast<CFDataRef>(o)).Ref(); }
  static NSString* Observed() { return @"length"; }
};

template <typename Kind>
class ChangeInPlace : public ::testing::Test {};
using Kinds = ::testing::Types<DictionaryKind, ArrayKind, DataKind>;
TYPED_TEST_SUITE(ChangeInPlace, Kinds);

// A handle changed `changes` times, its object held by the handle alone.
template <typename Kind>
typename Kind::Handle Changed(int changes) {
  typename Kind::Handle handle;
  for (int step = 1; step <= changes; ++step) Kind::Change(handle, step);
  return handle;
}

// The handle changes; whoever else holds the object sees it as it was.
template <typename Kind, typename Hold, typename Let>
void ExpectHolderSeesNoChange(typename Kind::Handle& handle, int& step, Hold hold, Let let) {
  id object = handle.Ref();
  id before = [[object mutableCopy] autorelease];
  hold(object);
  Kind::Change(handle, ++step);
  EXPECT_NE(handle.Ref(), object);
  EXPECT_TRUE([object isEqual:before]);
  EXPECT_FALSE([handle.Ref() isEqual:before]);
  let(object);
}

TYPED_TEST(ChangeInPlace, NoOtherHolderEverSeesAChange) {
  using Handle = typename TypeParam::Handle;
  NSAutoreleasePool* outer = [[NSAutoreleasePool alloc] init];
  int step = 2;
  Handle handle = Changed<TypeParam>(step);
  id sole = handle.Ref();
  TypeParam::Change(handle, ++step);
  EXPECT_EQ(handle.Ref(), sole);
  EXPECT_EQ(handle.RetainCount(), 1u);

  Handle* other = nullptr;
  ExpectHolderSeesNoChange<TypeParam>(
      handle, step, [&](id) { other = new Handle(handle); }, [&](id) { delete other; });
  ExpectHolderSeesNoChange<TypeParam>(
      handle, step, [](id object) { [object retain]; }, [](id object) { [object release]; });
  NSAutoreleasePool* pool = nil;
  ExpectHolderSeesNoChange<TypeParam>(
      handle, step,
      [&](id object) {
        pool = [[NSAutoreleasePool alloc] init];
        [[object retain] autorelease];
      },
      [&](id) { [pool drain]; });
  // The copy a change makes is held by the handle alone again.
  sole = handle.Ref();
  TypeParam::Change(handle, ++step);
  EXPECT_EQ(handle.Ref(), sole);
  [outer drain];
}

TYPED_TEST(ChangeInPlace, TheObjectIsImmutableToWhoeverLooks) {
  using Handle = typename TypeParam::Handle;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  Handle handle = Changed<TypeParam>(2);
  id object = handle.Ref();
  EXPECT_TRUE([object isKindOfClass:TypeParam::Immutable()]);
  EXPECT_FALSE([object isKindOfClass:TypeParam::Mutable()]);
  EXPECT_FALSE([object respondsToSelector:TypeParam::Changing()]);
  EXPECT_EQ([object classForCoder], TypeParam::Immutable());

  id copy = [object copy];
  EXPECT_EQ(copy, object);
  [copy release];
  id changeable = [[object mutableCopy] autorelease];
  EXPECT_TRUE([changeable isKindOfClass:TypeParam::Mutable()]);
  id platform = [[changeable copy] autorelease];
  EXPECT_TRUE([object isEqual:platform]);
  EXPECT_TRUE([platform isEqual:object]);
  EXPECT_EQ([object hash], [platform hash]);
  EXPECT_TRUE([[object description] isEqual:[platform description]]);
  id archived = [NSKeyedUnarchiver
      unarchiveObjectWithData:[NSKeyedArchiver archivedDataWithRootObject:object]];
  EXPECT_TRUE([archived isEqual:platform]);

  TypeParam::ChangeMutable(changeable);
  EXPECT_FALSE([object isEqual:changeable]);

  RVObject* made = RVObject::Create(object);
  EXPECT_TRUE(made->IsTypeOfClass(Handle::ClassType()));
  delete made;
  EXPECT_EQ(TypeParam::Bridged(object), object);
  RVDictionary holder;
  holder.SetObjectForKey(handle, "value");
  EXPECT_TRUE(holder.ObjectsClassTypeForKey("value") == Handle::ClassType());
  [pool drain];
}

// Whatever observing does to the platform's own immutable object (arrays
// refuse it by raising), it does to the handle's object, which comes out of
// it whole, of a class of its own layout, and is changed in place again.
TYPED_TEST(ChangeInPlace, ObservingLeavesTheObjectWhole) {
  using Handle = typename TypeParam::Handle;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  Handle handle = Changed<TypeParam>(2);
  id object = handle.Ref();
  id before = [[object mutableCopy] autorelease];
  id platform = [[before copy] autorelease];
  auto observe = [](id target) -> NSString* {
    NSObject* observer = [[[NSObject alloc] init] autorelease];
    @try {
      [target addObserver:observer forKeyPath:TypeParam::Observed() options:0 context:NULL];
      [target removeObserver:observer forKeyPath:TypeParam::Observed()];
    } @catch (NSException* exception) {
      return [exception name];
    }
    return @"";
  };
  EXPECT_TRUE([observe(object) isEqual:observe(platform)]);
  EXPECT_EQ(handle.RetainCount(), 1u);
  // Comparing leaves references in a pool of its own, drained before the
  // next change so that the object is held by its handle alone again.
  NSAutoreleasePool* looking = [[NSAutoreleasePool alloc] init];
  EXPECT_TRUE([object isEqual:before]);
  EXPECT_TRUE([object isKindOfClass:[object class]]);
  [looking drain];
  TypeParam::Change(handle, 3);
  EXPECT_EQ(handle.Ref(), object);
  EXPECT_TRUE([object isEqual:Changed<TypeParam>(3).Ref()]);
  [pool drain];
}

// A change that raises part-way leaves the handle's value exactly as it
// was, whether the handle held its object alone (changed in place) or the
// object was shared (copied).
TEST(ChangeInPlaceRaising, LeavesTheValueAsItWas) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  auto raising = [] {
    id keys[] = {@"a", @"b", @"c", @"d"};
    id values[] = {@1, @2, @3, @4};
    return [[[ThirdValueRaisingDictionary alloc] initWithObjects:values forKeys:keys
                                                           count:4] autorelease];
  };
  auto expectUnchanged = [](RVObject& handle, auto change) {
    for (bool shared : {false, true}) {
      NSAutoreleasePool* inner = [[NSAutoreleasePool alloc] init];
      RVObject* other = shared ? new RVObject(handle) : nullptr;
      id object = handle.Ref();
      id before = [[object mutableCopy] autorelease];
      bool raised = false;
      @try {
        change();
      } @catch (NSException* exception) {
        raised = true;
      }
      EXPECT_TRUE(raised);
      EXPECT_EQ(handle.Ref(), object);
      EXPECT_TRUE([handle.Ref() isEqual:before]) << (shared ? "copied" : "in place");
      delete other;
      [inner drain];
    }
  };
  RVDictionary dictionary = Changed<DictionaryKind>(2);
  expectUnchanged(dictionary, [&] { dictionary.AddDictionary(RVDictionary(raising())); });
  expectUnchanged(dictionary, [&] { dictionary += raising(); });

  RVArray array = Changed<ArrayKind>(2);
  expectUnchanged(array, [&] { array.RemoveObjectAtIndex(2); });
  expectUnchanged(array, [&] { array.SetObjectAtIndex(RVString("z"), 2); });
  expectUnchanged(array, [&] { array.ExchangeObjectAtIndexWithObjectAtIndex(0, 2); });
  expectUnchanged(array, [&] { array.ExchangeObjectAtIndexWithObjectAtIndex(2, 0); });
  expectUnchanged(array, [&] { array.AddObject(RVObject()); });

  RVData data = Changed<DataKind>(2);
  RVData raisingData([[[BytesRaisingData alloc] init] autorelease]);
  expectUnchanged(data, [&] { data.AppendData(raisingData); });
  id object = dictionary.Ref();
  dictionary.AddDictionary(RVDictionary([NSDictionary dictionaryWithObject:@"v" forKey:@"z"]));
  EXPECT_EQ(dictionary.Ref(), object);
  EXPECT_EQ(dictionary.Count(), 3u);
  [pool drain];
}

TEST(ChangeInPlaceWalks, EnumeratorsAndSelfInsertionSeeTheFormerObject) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  RVDictionary dictionary = Changed<DictionaryKind>(2);
  // A live enumerator holds the object: the change copies.
  RVEnumerator keys = dictionary.KeyEnumerator();
  DictionaryKind::Change(dictionary, 3);
  EXPECT_EQ([[keys.Ref() allObjects] count], 2u);

  // An array added to itself holds its former self, not itself.
  RVArray array;
  array.AddObject(RVString("x"));
  array.AddObject(array);
  EXPECT_NE(array.InternalObjectAtIndex(1), array.Ref());
  EXPECT_EQ([array.InternalObjectAtIndex(1) count], 1u);
  dictionary.SetObjectForKey(dictionary, "self");
  EXPECT_EQ([dictionary.DictionaryForKey("self").Ref() count], 3u);
  [pool drain];

  // A loop over an object nobody retained, while its handle changes it,
  // ends with the platform's mutation exception, not in freed memory.
  NSString* raised = nil;
  @try {
    for (id element in array.Ref()) {
      (void)element;
      array.AddObject(RVString("y"));
    }
  } @catch (NSException* exception) {
    raised = [exception name];
  }
  EXPECT_TRUE([raised isEqual:NSGenericException]);
}

}  // namespace
