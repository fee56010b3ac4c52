#import <Foundation/Foundation.h>

#include <Rovani/RVValue.h>

#include "Platform/RVPlatform.h"

RVValue::RVValue() : RVObject() {}
RVValue::RVValue(const RVValue& other) : RVObject(other) {}
RVValue::RVValue(const RVNumber& number) : RVObject(number) {}
RVValue::RVValue(NSValue* value) : RVObject(value) {}
RVValue::RVValue(bool value) : RVObject() { operator=(value); }
RVValue::RVValue(signed char value) : RVObject() { operator=(value); }
RVValue::RVValue(char value) : RVObject() { operator=(value); }
RVValue::RVValue(unsigned char value) : RVObject() { operator=(value); }
RVValue::RVValue(short value) : RVObject() { operator=(value); }
RVValue::RVValue(unsigned short value) : RVObject() { operator=(value); }
RVValue::RVValue(int value) : RVObject() { operator=(value); }
RVValue::RVValue(unsigned int value) : RVObject() { operator=(value); }
RVValue::RVValue(long value) : RVObject() { operator=(value); }
RVValue::RVValue(unsigned long value) : RVObject() { operator=(value); }
RVValue::~RVValue() {}

// Unlike numbers, boxes drop their creation reference by autorelease.
#define RV_VALUE_ASSIGN(Type, initialiser, argument)                                \
  RVValue& RVValue::operator=(Type value) {                                         \
    RVObject::operator=([[[NSNumber alloc] initialiser:(argument)] autorelease]); \
    return *this;                                                                   \
  }

RV_VALUE_ASSIGN(bool, initWithBool, value ? YES : NO)
RV_VALUE_ASSIGN(signed char, initWithBool, value)
RV_VALUE_ASSIGN(char, initWithChar, value)
RV_VALUE_ASSIGN(unsigned char, initWithUnsignedChar, value)
RV_VALUE_ASSIGN(short, initWithShort, value)
RV_VALUE_ASSIGN(unsigned short, initWithUnsignedShort, value)
RV_VALUE_ASSIGN(int, initWithInt, value)
RV_VALUE_ASSIGN(unsigned int, initWithUnsignedInt, value)
RV_VALUE_ASSIGN(long, initWithLong, value)
RV_VALUE_ASSIGN(unsigned long, initWithUnsignedLong, value)
#undef RV_VALUE_ASSIGN

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

RVValue::operator bool() const { return [Ref() boolValue] ? true : false; }
RVValue::operator signed char() const { return [Ref() boolValue]; }
RVValue::operator char() const { return [Ref() charValue]; }
RVValue::operator unsigned char() const { return [Ref() unsignedCharValue]; }
RVValue::operator short() const { return [Ref() shortValue]; }
RVValue::operator unsigned short() const { return [Ref() unsignedShortValue]; }
RVValue::operator int() const { return [Ref() intValue]; }
RVValue::operator unsigned int() const { return [Ref() unsignedIntValue]; }
RVValue::operator long() const { return [Ref() longValue]; }
RVValue::operator unsigned long() const { return [Ref() unsignedLongValue]; }
RVValue::operator RVBool() const {
  RVBool result(false);
  result = static_cast<signed char>([Ref() boolValue]);
  return result;
}
RVValue::operator NSValue*() const { return Ref(); }

bool RVValue::operator==(const RVValue& other) const {
  return [Ref() isEqualToValue:other.Ref()] ? true : false;
}
bool RVValue::operator==(const RVNumber& other) const {
  return [Ref() isEqualToValue:other.Ref()] ? true : false;
}
bool RVValue::operator==(NSValue* other) const {
  return [other isEqualToValue:Ref()] ? true : false;
}
bool RVValue::operator==(unsigned char value) const {
  return static_cast<unsigned char>([Ref() unsignedCharValue]) == value;
}
bool RVValue::operator==(short value) const { return [Ref() shortValue] == value; }
bool RVValue::operator==(unsigned short value) const {
  return static_cast<unsigned short>([Ref() unsignedShortValue]) == value;
}
bool RVValue::operator==(int value) const { return [Ref() intValue] == value; }
bool RVValue::operator==(unsigned int value) const { return [Ref() unsignedIntValue] == value; }
bool RVValue::operator==(long value) const { return [Ref() longValue] == value; }
bool RVValue::operator==(unsigned long value) const { return [Ref() unsignedLongValue] == value; }
bool RVValue::operator==(char value) const { return [Ref() charValue] == value; }
bool RVValue::operator==(bool value) const { return ([Ref() boolValue] ? true : false) == value; }
bool RVValue::operator==(signed char value) const {
  return (value == 1) == ([Ref() boolValue] != 0);
}
bool RVValue::operator!=(const RVValue& other) const { return !operator==(other); }
bool RVValue::operator!=(const RVNumber& other) const { return !operator==(other); }
bool RVValue::operator!=(NSValue* other) const { return ![other isEqualToValue:Ref()]; }
bool RVValue::operator!=(unsigned char value) const { return !operator==(value); }
bool RVValue::operator!=(short value) const { return !operator==(value); }
bool RVValue::operator!=(unsigned short value) const { return !operator==(value); }
bool RVValue::operator!=(int value) const { return !operator==(value); }
bool RVValue::operator!=(unsigned int value) const { return !operator==(value); }
bool RVValue::operator!=(long value) const { return !operator==(value); }
bool RVValue::operator!=(unsigned long value) const { return !operator==(value); }
bool RVValue::operator!=(char value) const {
  RVValue box(value);
  return ![Ref() isEqualToValue:box.Ref()];
}
bool RVValue::operator!=(bool value) const { return !operator==(value); }
bool RVValue::operator!=(signed char value) const { return !operator==(value); }

RVValue& RVValue::False() {
  static RVValue falseValue(false);
  return falseValue;
}

RVString RVValue::ClassType() { return RVString(RVClassTypeText(typeid(RVValue))); }
