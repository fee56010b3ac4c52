#import <Foundation/Foundation.h>

#include <Rovani/RVValue.h>

#include "Platform/Runtime/RVClassType.h"
#include "Platform/Runtime/RVScalars.h"

namespace {
// Unlike numbers, boxes drop their creation reference by autorelease.
void Adopt(RVValue& value, NSNumber* made) {
  static_cast<RVObject&>(value) = [made autorelease];
}
}  // namespace

RVValue::RVValue() : RVObject() {}
RVValue::RVValue(const RVValue& other) : RVObject(other) {}
RVValue::RVValue(const RVNumber& number) : RVObject(number) {}
RVValue::RVValue(NSValue* value) : RVObject(value) {}
RVValue::~RVValue() {}

RV_SCALAR_MEMBERS(RVValue, bool)
RV_SCALAR_MEMBERS(RVValue, char)
RV_SCALAR_MEMBERS(RVValue, unsigned char)
RV_SCALAR_MEMBERS(RVValue, short)
RV_SCALAR_MEMBERS(RVValue, unsigned short)
RV_SCALAR_MEMBERS(RVValue, int)
RV_SCALAR_MEMBERS(RVValue, unsigned int)
RV_SCALAR_MEMBERS(RVValue, long)
RV_SCALAR_MEMBERS(RVValue, unsigned long)

RV_SCALAR_COMPARISONS(RVValue, bool)
RV_SCALAR_COMPARISONS(RVValue, unsigned char)
RV_SCALAR_COMPARISONS(RVValue, short)
RV_SCALAR_COMPARISONS(RVValue, unsigned short)
RV_SCALAR_COMPARISONS(RVValue, int)
RV_SCALAR_COMPARISONS(RVValue, unsigned int)
RV_SCALAR_COMPARISONS(RVValue, long)
RV_SCALAR_COMPARISONS(RVValue, unsigned long)

// Where values part from numbers.

// A signed char is boxed as the platform's BOOL holding the raw value, and
// read back as the box's truth.
RVValue::RVValue(signed char value) : RVObject() { operator=(value); }
RVValue& RVValue::operator=(signed char value) {
  Adopt(*this, RVNewNumber(value));
  return *this;
}
RVValue::operator signed char() const { return [Ref() boolValue]; }

// Only the value 1 counts as true.
bool RVValue::operator==(signed char value) const {
  return (value == 1) == ([Ref() boolValue] != 0);
}
bool RVValue::operator!=(signed char value) const { return !operator==(value); }

bool RVValue::operator==(char value) const { return RVScalarEquals(Ref(), value); }
// Compares boxes, so it is not always the negation of operator==(char).
bool RVValue::operator!=(char value) const {
  RVValue box(value);
  return ![Ref() isEqualToValue:box.Ref()];
}

// Asks the argument, not this value: nil is never equal.
bool RVValue::operator==(NSValue* other) const {
  return [other isEqualToValue:Ref()] ? true : false;
}
bool RVValue::operator!=(NSValue* other) const { return ![other isEqualToValue:Ref()]; }

bool RVValue::operator==(const RVValue& other) const {
  return [Ref() isEqualToValue:other.Ref()] ? true : false;
}
bool RVValue::operator==(const RVNumber& other) const {
  return [Ref() isEqualToValue:other.Ref()] ? true : false;
}
bool RVValue::operator!=(const RVValue& other) const { return !operator==(other); }
bool RVValue::operator!=(const RVNumber& other) const { return !operator==(other); }

RVValue& RVValue::operator=(const RVValue& other) {
  RVObject::operator=(other.Ref());
  return *this;
}
RVValue& RVValue::operator=(const RVNumber& number) {
  RVObject::operator=(number.Ref());
  return *this;
}
RVValue& RVValue::operator=(NSValue* value) {
  RVObject::operator=(value);
  return *this;
}

RVValue& RVValue::SetValueFromPointer(const void* pointer) {
  RVObject::operator=([NSNumber valueWithPointer:pointer]);
  return *this;
}

RVValue RVValue::ValueFromPointer(const void* pointer) {
  RVValue value;
  value.SetValueFromPointer(pointer);
  return value;
}

void* RVValue::PointerValue() const { return [Ref() pointerValue]; }

RVValue::operator RVBool() const {
  RVBool result(false);
  result = static_cast<signed char>([Ref() boolValue]);
  return result;
}
RVValue::operator NSValue*() const { return Ref(); }

RVValue& RVValue::False() {
  static RVValue falseValue(false);
  return falseValue;
}

RVString RVValue::ClassType() { return RVString(RVClassTypeText(typeid(RVValue))); }
