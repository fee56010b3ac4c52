#import <Foundation/Foundation.h>

#include <Rovani/RVNumber.h>

#include "Platform/RVPlatform.h"

RVNumber::RVNumber() : RVObject() {}
RVNumber::RVNumber(const RVNumber& other) : RVObject(other) {}
RVNumber::RVNumber(RVId obj) : RVObject(obj) {}
RVNumber::RVNumber(NSNumber* number) : RVObject(number) { RVObject::operator=(number); }
RVNumber::RVNumber(RVBool boolean) : RVObject() { operator=(static_cast<bool>(boolean)); }
RVNumber::RVNumber(bool value) : RVObject() { operator=(value); }
RVNumber::RVNumber(char value) : RVObject() { operator=(value); }
RVNumber::RVNumber(unsigned char value) : RVObject() { operator=(value); }
RVNumber::RVNumber(short value) : RVObject() { operator=(value); }
RVNumber::RVNumber(unsigned short value) : RVObject() { operator=(value); }
RVNumber::RVNumber(int value) : RVObject() { operator=(value); }
RVNumber::RVNumber(unsigned int value) : RVObject() { operator=(value); }
RVNumber::RVNumber(long value) : RVObject() { operator=(value); }
RVNumber::RVNumber(unsigned long value) : RVObject() { operator=(value); }
RVNumber::RVNumber(float value) : RVObject() { operator=(value); }
RVNumber::RVNumber(double value) : RVObject() { operator=(value); }
RVNumber::~RVNumber() {}

// The handle keeps the only reference to a number it makes.
#define RV_NUMBER_ASSIGN(Type, initialiser, argument)            \
  RVNumber& RVNumber::operator=(Type value) {                    \
    NSNumber* made = [[NSNumber alloc] initialiser:(argument)];  \
    RVObject::operator=(made);                                   \
    [made release];                                              \
    return *this;                                                \
  }

RV_NUMBER_ASSIGN(bool, initWithBool, value ? YES : NO)
RV_NUMBER_ASSIGN(char, initWithChar, value)
RV_NUMBER_ASSIGN(unsigned char, initWithUnsignedChar, value)
RV_NUMBER_ASSIGN(short, initWithShort, value)
RV_NUMBER_ASSIGN(unsigned short, initWithUnsignedShort, value)
RV_NUMBER_ASSIGN(int, initWithInt, value)
RV_NUMBER_ASSIGN(unsigned int, initWithUnsignedInt, value)
RV_NUMBER_ASSIGN(long, initWithLong, value)
RV_NUMBER_ASSIGN(unsigned long, initWithUnsignedLong, value)
RV_NUMBER_ASSIGN(float, initWithFloat, value)
RV_NUMBER_ASSIGN(double, initWithDouble, value)
#undef RV_NUMBER_ASSIGN

RVNumber& RVNumber::operator=(const RVNumber& other) {
  RVObject::operator=(other.Ref());
  return *this;
}
RVNumber& RVNumber::operator=(RVId obj) {
  RVObject::operator=(obj);
  return *this;
}
RVNumber& RVNumber::operator=(NSNumber* number) {
  RVObject::operator=(number);
  return *this;
}
RVNumber& RVNumber::operator=(RVBool boolean) { return operator=(static_cast<bool>(boolean)); }

RVNumber::operator char() const { return [Ref() charValue]; }
RVNumber::operator unsigned char() const { return [Ref() unsignedCharValue]; }
RVNumber::operator short() const { return [Ref() shortValue]; }
RVNumber::operator unsigned short() const { return [Ref() unsignedShortValue]; }
RVNumber::operator int() const { return [Ref() intValue]; }
RVNumber::operator unsigned int() const { return [Ref() unsignedIntValue]; }
RVNumber::operator long() const { return [Ref() longValue]; }
RVNumber::operator unsigned long() const { return [Ref() unsignedLongValue]; }
RVNumber::operator float() const { return RVFloatValue(Ref()); }
RVNumber::operator double() const { return RVDoubleValue(Ref()); }
RVNumber::operator bool() const { return [Ref() boolValue] ? true : false; }
RVNumber::operator signed char() const { return [Ref() boolValue]; }
RVNumber::operator RVBool() const {
  RVBool result(false);
  result = static_cast<signed char>([Ref() boolValue]);
  return result;
}
RVNumber::operator NSNumber*() const { return Ref(); }

bool RVNumber::operator==(const RVNumber& other) const {
  return [Ref() isEqualToNumber:other.Ref()] ? true : false;
}
bool RVNumber::operator==(char value) const { return [Ref() charValue] == value; }
bool RVNumber::operator==(unsigned char value) const {
  return static_cast<unsigned char>([Ref() unsignedCharValue]) == value;
}
bool RVNumber::operator==(short value) const { return [Ref() shortValue] == value; }
bool RVNumber::operator==(unsigned short value) const {
  return static_cast<unsigned short>([Ref() unsignedShortValue]) == value;
}
bool RVNumber::operator==(int value) const { return [Ref() intValue] == value; }
bool RVNumber::operator==(unsigned int value) const { return [Ref() unsignedIntValue] == value; }
bool RVNumber::operator==(long value) const { return [Ref() longValue] == value; }
bool RVNumber::operator==(unsigned long value) const {
  return [Ref() unsignedLongValue] == value;
}
bool RVNumber::operator==(float value) const { return RVFloatValue(Ref()) == value; }
bool RVNumber::operator==(double value) const { return RVDoubleValue(Ref()) == value; }
bool RVNumber::operator==(bool value) const { return ([Ref() boolValue] ? true : false) == value; }
bool RVNumber::operator==(RVBool value) const {
  return static_cast<bool>(value) == ([Ref() boolValue] ? true : false);
}
bool RVNumber::operator!=(const RVNumber& other) const { return !operator==(other); }
bool RVNumber::operator!=(char value) const { return !operator==(value); }
bool RVNumber::operator!=(unsigned char value) const { return !operator==(value); }
bool RVNumber::operator!=(short value) const { return !operator==(value); }
bool RVNumber::operator!=(unsigned short value) const { return !operator==(value); }
bool RVNumber::operator!=(int value) const { return !operator==(value); }
bool RVNumber::operator!=(unsigned int value) const { return !operator==(value); }
bool RVNumber::operator!=(long value) const { return !operator==(value); }
bool RVNumber::operator!=(unsigned long value) const { return !operator==(value); }
bool RVNumber::operator!=(float value) const { return !operator==(value); }
bool RVNumber::operator!=(double value) const { return !operator==(value); }
bool RVNumber::operator!=(bool value) const { return !operator==(value); }
bool RVNumber::operator!=(RVBool value) const {
  RVBool copy(value);
  return !operator==(copy);
}

int RVNumber::TypeOfNumber() const { return 0; }

bool RVNumber::IsFloatType() const {
  const char* code = [Ref() objCType];
  RVString type(code);
  if (type.IsEmpty()) return false;
  return type == "d" || type == "f";
}

RVString RVNumber::ToString() const { return RVString(static_cast<RVId>([Ref() description])); }
RVString RVNumber::StringValue() const { return ToString(); }

RVNumber& RVNumber::False() {
  static RVNumber zero(false);
  return zero;
}

RVString RVNumber::ClassType() { return RVString(RVClassTypeText(typeid(RVNumber))); }
