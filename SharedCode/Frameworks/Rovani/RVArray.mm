#import <Foundation/Foundation.h>

#include <typeinfo>

#include <Rovani/RVArray.h>
#include <Rovani/RVBool.h>
#include <Rovani/RVData.h>
#include <Rovani/RVDate.h>
#include <Rovani/RVDictionary.h>
#include <Rovani/RVInternalRef.h>
#include <Rovani/RVNumber.h>
#include <Rovani/RVValue.h>

#include "Platform/Collections/RVChangedCopy.h"
#include "Platform/Runtime/RVClassType.h"


RVArray::RVArray() : RVObject() {}
RVArray::RVArray(const RVArray& other) : RVObject(other) {}
RVArray::RVArray(const RVObject& other)
    : RVObject(dynamic_cast<const RVArray&>(other)) {}
RVArray::RVArray(NSArray* array) : RVObject(array) {}
RVArray::RVArray(CFArrayRef array) : RVObject(RVInternalRef::ToRVId(array)) {}
RVArray::~RVArray() {}

RVArray& RVArray::operator=(const RVArray& other) {
  RVObject::operator=(other.Ref());
  return *this;
}

RVArray& RVArray::operator=(NSArray* array) {
  RVObject::operator=(array);
  return *this;
}

RVArray& RVArray::operator=(CFArrayRef array) {
  RVObject::operator=(RVInternalRef::ToRVId(array));
  return *this;
}

RVArray::operator NSArray*() const { return Ref(); }

RVArray::operator CFArrayRef() const { return (CFArrayRef)Ref(); }

RVString RVArray::ClassType() { return RVString(RVClassTypeText(typeid(RVArray))); }

bool RVArray::operator==(NSArray* other) const { return RVObject::operator==((RVId)other); }

bool RVArray::operator!=(NSArray* other) const { return RVObject::operator!=((RVId)other); }

bool RVArray::IsEmpty() const { return [Ref() count] == 0; }

unsigned int RVArray::Count() const { return static_cast<unsigned int>([Ref() count]); }

RVId RVArray::InternalObjectAtIndex(unsigned int index) const { return [Ref() objectAtIndex:index]; }

RVObject* RVArray::ObjectAtIndex(unsigned int index) const {
  return RVObject::Create([Ref() objectAtIndex:index]);
}

RVObject* RVArray::operator[](int index) const { return ObjectAtIndex(index); }

RVString RVArray::StringAtIndex(unsigned int index) const {
  return RVString(static_cast<NSString*>([Ref() objectAtIndex:index]));
}

RVNumber RVArray::NumberAtIndex(unsigned int index) const {
  return RVNumber(static_cast<NSNumber*>([Ref() objectAtIndex:index]));
}

RVBool RVArray::BooleanAtIndex(unsigned int index) const {
  return RVBool(static_cast<RVId>([Ref() objectAtIndex:index]));
}

RVData RVArray::DataAtIndex(unsigned int index) const {
  return RVData(static_cast<NSData*>([Ref() objectAtIndex:index]));
}

RVDate RVArray::DateAtIndex(unsigned int index) const {
  return RVDate(static_cast<NSDate*>([Ref() objectAtIndex:index]));
}

RVDictionary RVArray::DictionaryAtIndex(unsigned int index) const {
  return RVDictionary(static_cast<NSDictionary*>([Ref() objectAtIndex:index]));
}

RVArray RVArray::ArrayAtIndex(unsigned int index) const {
  return RVArray(static_cast<NSArray*>([Ref() objectAtIndex:index]));
}

RVValue RVArray::ValueAtIndex(unsigned int index) const {
  RVValue value;
  static_cast<RVObject&>(value) = static_cast<RVId>([Ref() objectAtIndex:index]);
  return value;
}

RVString RVArray::ComponentsJoinedByString(const RVString& separator) const {
  return RVString(static_cast<RVId>([Ref() componentsJoinedByString:separator.Ref()]));
}

void RVArray::AddObject(const RVObject& object) {
  id element = object.Ref();
  RVChangeHeld(
      *this, RVStoreKind::kArray, [&](NSMutableArray* working) { [working addObject:element]; },
      element);
}

void RVArray::RemoveLastObject() {
  RVChangeHeld(*this, RVStoreKind::kArray,
               [](NSMutableArray* working) { [working removeLastObject]; });
}

void RVArray::RemoveObjectAtIndex(unsigned int index) {
  RVChangeHeld(*this, RVStoreKind::kArray,
               [&](NSMutableArray* working) { [working removeObjectAtIndex:index]; });
}

void RVArray::ExchangeObjectAtIndexWithObjectAtIndex(unsigned int first, unsigned int second) {
  RVChangeHeld(*this, RVStoreKind::kArray, [&](NSMutableArray* working) {
    [working exchangeObjectAtIndex:first withObjectAtIndex:second];
  });
}

void RVArray::SetObjectAtIndex(const RVObject& object, unsigned int index) {
  id element = object.Ref();
  if (object.IsEmpty()) {
    if (object.IsTypeOfClass(RVDictionary::ClassType()))
      element = [NSDictionary dictionary];
    else if (object.IsTypeOfClass(RVArray::ClassType()))
      element = [NSArray array];
  }
  RVChangeHeld(
      *this, RVStoreKind::kArray,
      [&](NSMutableArray* working) { [working replaceObjectAtIndex:index withObject:element]; },
      element);
}

void RVArray::RemoveAllObjects() { Empty(); }
