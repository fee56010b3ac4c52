#import <Foundation/Foundation.h>

#include <cstring>

#include <Rovani/RVArray.h>
#include <Rovani/RVBool.h>
#include <Rovani/RVData.h>
#include <Rovani/RVDate.h>
#include <Rovani/RVDictionary.h>
#include <Rovani/RVEnumerator.h>
#include <Rovani/RVNumber.h>

#include "Platform/Files/RVAtomicFile.h"
#include "Platform/Collections/RVChangedCopy.h"
#include "Platform/Runtime/RVOwned.h"
#include "Platform/Runtime/RVClassType.h"
#include "Platform/Runtime/RVHandleTable.h"
#include "Platform/PropertyLists/RVPropertyList.h"

namespace {

// A complete one-line property-list document around a dictionary body.
NSString* const kDictionaryBodyTemplate =
    @"<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
    @"<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    @"\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">"
    @"<plist version=\"1.0\"><dict>%@</dict></plist>";

id PlaceholderForEmptyValue(const RVObject& value, bool plainObjectsOnly) {
  if (value.IsTypeOfClass(RVDictionary::ClassType())) return [NSDictionary dictionary];
  if (value.IsTypeOfClass(RVArray::ClassType())) return [NSArray array];
  if (value.IsTypeOfClass(RVString::ClassType())) return [NSString string];
  if (value.IsTypeOfClass(RVBool::ClassType())) {
    bool truth = dynamic_cast<const RVBool&>(value);
    return [NSNumber numberWithBool:truth];
  }
  if (!plainObjectsOnly || value.IsTypeOfClass(RVObject::ClassType())) return [NSNull null];
  return nil;
}

bool WriteDictionary(NSDictionary* dictionary, NSString* path, BOOL atomically) {
  NSData* data = RVPropertyListXMLData(dictionary);
  if (data == nil) return false;
  return atomically ? RVWriteDataToFileAtomically(data, path) : [data writeToFile:path atomically:NO];
}

}  // namespace

// ---------------------------------------------------------------------------
// Construction and assignment

RVDictionary::RVDictionary() : RVObject() {}
RVDictionary::RVDictionary(const RVDictionary& other) : RVObject(other) {}
RVDictionary::RVDictionary(RVId obj) : RVObject(obj) {}
RVDictionary::RVDictionary(NSDictionary* dictionary) : RVObject(dictionary) {}
RVDictionary::RVDictionary(CFDictionaryRef dictionary) : RVObject((RVId)dictionary) {}
RVDictionary::RVDictionary(const RVData& data) : RVObject() { operator=(data); }
RVDictionary::~RVDictionary() {}

RVDictionary& RVDictionary::operator=(const RVDictionary& other) {
  RVObject::operator=(other.Ref());
  return *this;
}

RVDictionary& RVDictionary::operator=(RVId obj) {
  RVObject::operator=(obj);
  return *this;
}

RVDictionary& RVDictionary::operator=(NSDictionary* dictionary) {
  RVObject::operator=(dictionary);
  return *this;
}

RVDictionary& RVDictionary::operator=(CFDictionaryRef dictionary) {
  RVObject::operator=((RVId)dictionary);
  return *this;
}

RVDictionary& RVDictionary::operator=(const RVData& data) {
  id list = RVPropertyListFromBytes(data.Bytes(), data.Length());
  if ([list isKindOfClass:[NSDictionary class]]) {
    RVObject::operator=(list);
    return *this;
  }
  // Read the text as the inside of a dictionary element.
  RVString text(data);
  NSString* wrapped = [NSString stringWithFormat:kDictionaryBodyTemplate, text.Ref()];
  if (wrapped != nil) {
    // The byte count is the text's length in UTF-16 units, so text with
    // non-ASCII characters is cut short by the difference (and then reads
    // as no dictionary).
    list = RVPropertyListFromBytes([wrapped UTF8String], [wrapped length]);
    if (![list isKindOfClass:[NSDictionary class]]) list = nil;
    RVObject::operator=(list);
  }
  return *this;
}

RVDictionary::operator NSDictionary*() const { return Ref(); }

RVDictionary::operator CFDictionaryRef() const { return (CFDictionaryRef)Ref(); }

RVString RVDictionary::ClassType() { return RVString(RVClassTypeText(typeid(RVDictionary))); }

// ---------------------------------------------------------------------------
// Reading

bool RVDictionary::IsEmpty() const { return [Ref() count] == 0; }

unsigned int RVDictionary::Count() const { return static_cast<unsigned int>([Ref() count]); }

RVObject* RVDictionary::ValueForKey(const RVString& key) const {
  id value = [Ref() objectForKey:key.Ref()];
  if (value == nil) return nullptr;
  return RVObject::Create(value);
}

RVId RVDictionary::InternalValueForKey(const RVString& key) const {
  return [Ref() objectForKey:key.Ref()];
}

bool RVDictionary::RVIdForKeyIfPresent(const RVString& key, RVId& out) const {
  out = [Ref() objectForKey:key.Ref()];
  return out != nil;
}

RVObject* RVDictionary::ValueOfClassTypeForKey(const RVString& classType,
                                               const RVString& key) const {
  RVObject* value = ValueForKey(key);
  if (value == nullptr) return nullptr;
  if (value->IsTypeOfClass(classType)) return value;
  if (classType == RVBool::ClassType() && value->IsTypeOfClass(RVNumber::ClassType())) {
    bool truth = *static_cast<RVNumber*>(value);
    delete value;
    return new RVBool(truth);
  }
  delete value;
  return nullptr;
}

RVString RVDictionary::ObjectsClassTypeForKey(const RVString& key) const {
  id value = [Ref() objectForKey:key.Ref()];
  if (value == nil) return RVString();
  return RVString(RVClassTypeText(RVHandleTypeFor(value)));
}

// The typed getters answer what ValueOfClassTypeForKey would, but test the
// value's kind in place rather than building and deleting a heap handle.
template <typename Handle>
static Handle TypedValue(NSDictionary* dictionary, const RVString& key) {
  id value = [dictionary objectForKey:key.Ref()];
  if (value != nil && RVHandleTypeFor(value) == typeid(Handle)) return Handle(value);
  return Handle();
}

RVString RVDictionary::StringForKey(const RVString& key) const {
  return TypedValue<RVString>(Ref(), key);
}

RVArray RVDictionary::ArrayForKey(const RVString& key) const {
  return TypedValue<RVArray>(Ref(), key);
}

RVData RVDictionary::DataForKey(const RVString& key) const {
  return TypedValue<RVData>(Ref(), key);
}

RVDate RVDictionary::DateForKey(const RVString& key) const {
  return TypedValue<RVDate>(Ref(), key);
}

RVNumber RVDictionary::NumberForKey(const RVString& key) const {
  return TypedValue<RVNumber>(Ref(), key);
}

RVDictionary RVDictionary::DictionaryForKey(const RVString& key) const {
  return TypedValue<RVDictionary>(Ref(), key);
}

RVBool RVDictionary::BooleanForKey(const RVString& key) const {
  id value = [Ref() objectForKey:key.Ref()];
  if (value == nil) return RVBool(false);
  const std::type_info& type = RVHandleTypeFor(value);
  // A boolean is answered with the shared instance of its truth; a plain
  // number is read as a boolean too: non-zero is true.
  if (type == typeid(RVBool) || type == typeid(RVNumber))
    return RVBool([value boolValue] ? true : false);
  return RVBool(false);
}

RVEnumerator RVDictionary::KeyEnumerator() const { return RVEnumerator([Ref() keyEnumerator]); }

// ---------------------------------------------------------------------------
// Writing

void RVDictionary::SetObjectForKey(const RVObject& value, const RVString& key) {
  id object = value.Ref();
  if (value.IsEmpty()) object = PlaceholderForEmptyValue(value, false);
  RVChangeHeld(
      *this, RVStoreKind::kDictionary,
      [&](NSMutableDictionary* working) { [working setObject:object forKey:key.Ref()]; }, object);
}

void RVDictionary::SetValueForKey(const RVObject& value, const RVString& key) {
  // An empty handle that no placeholder fits passes on what it holds: zero
  // bytes are stored as zero bytes, and only nil removes the key.
  id object = value.Ref();
  if (value.IsEmpty()) {
    id placeholder = PlaceholderForEmptyValue(value, true);
    if (placeholder != nil) object = placeholder;
  }
  RVChangeHeld(
      *this, RVStoreKind::kDictionary,
      [&](NSMutableDictionary* working) { [working setValue:object forKey:key.Ref()]; }, object);
}

void RVDictionary::RemoveObjectForKey(const RVString& key) {
  RVChangeHeld(*this, RVStoreKind::kDictionary, [&](NSMutableDictionary* working) {
    [working removeObjectForKey:key.Ref()];
  });
}

void RVDictionary::AddDictionary(const RVDictionary& other) {
  if (other.IsEmpty()) return;
  // Nothing to add from a dictionary equal to this one (itself included).
  if (!(static_cast<const RVObject&>(other) != static_cast<const RVObject&>(*this))) return;
  // Adding entries is many steps: reading the other dictionary (of any
  // class, whose values may raise when read) and copying its keys happen
  // first, into a dictionary of the platform's own, so that whatever raises
  // leaves this one as it was, changed in place or not. The staging
  // dictionary is owned before anything can raise (an initialiser that
  // raises leaks what it allocated); a pool of its own takes what the
  // platform autoreleases while adding, drained when nothing raised.
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  RVOwned<NSMutableDictionary*> entries =
      RVAdopt([[NSMutableDictionary alloc] initWithCapacity:[other.Ref() count]]);
  [entries.Get() addEntriesFromDictionary:other.Ref()];
  RVChangeHeld(*this, RVStoreKind::kDictionary, [&](NSMutableDictionary* working) {
    [working addEntriesFromDictionary:entries.Get()];
  });
  entries.Reset();
  [pool drain];
}

RVDictionary& RVDictionary::operator+=(const RVDictionary& other) {
  AddDictionary(other);
  return *this;
}

RVDictionary& RVDictionary::operator+=(NSDictionary* other) {
  AddDictionary(RVDictionary(other));
  return *this;
}

RVDictionary& RVDictionary::operator+=(CFDictionaryRef other) {
  AddDictionary(RVDictionary(other));
  return *this;
}

// ---------------------------------------------------------------------------
// Files

RVDictionary RVDictionary::DictionaryWithContentsOfFile(const RVString& path) {
  id contents = RVPropertyListFromFile(path.Ref());
  if (![contents isKindOfClass:[NSDictionary class]]) contents = nil;
  return RVDictionary(static_cast<RVId>(contents));
}

bool RVDictionary::WriteToFile(const RVString& path) const {
  return WriteDictionary(Ref(), path.Ref(), NO);
}

bool RVDictionary::WriteToFileAtomically(const RVString& path) const {
  return WriteDictionary(Ref(), path.Ref(), YES);
}
