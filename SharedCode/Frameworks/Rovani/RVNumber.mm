#import <Foundation/Foundation.h>

#include <Rovani/RVNumber.h>

#include "Platform/Runtime/RVClassType.h"
#include "Platform/Runtime/RVScalars.h"
#include "Platform/Runtime/RVOwned.h"

namespace {
// The handle keeps the only reference to a number it makes.
void Adopt(RVNumber& number, NSNumber* made) {
  static_cast<RVObject&>(number) = RVAdopt(made).Get();
}
}  // namespace

RVNumber::RVNumber() : RVObject() {}
RVNumber::RVNumber(const RVNumber& other) : RVObject(other) {}
RVNumber::RVNumber(RVId obj) : RVObject(obj) {}
RVNumber::RVNumber(NSNumber* number) : RVObject(number) { RVObject::operator=(number); }
RVNumber::RVNumber(RVBool boolean) : RVObject() { operator=(static_cast<bool>(boolean)); }
RVNumber::~RVNumber() {}

RV_SCALAR_MEMBERS(RVNumber, bool)
RV_SCALAR_MEMBERS(RVNumber, char)
RV_SCALAR_MEMBERS(RVNumber, unsigned char)
RV_SCALAR_MEMBERS(RVNumber, short)
RV_SCALAR_MEMBERS(RVNumber, unsigned short)
RV_SCALAR_MEMBERS(RVNumber, int)
RV_SCALAR_MEMBERS(RVNumber, unsigned int)
RV_SCALAR_MEMBERS(RVNumber, long)
RV_SCALAR_MEMBERS(RVNumber, unsigned long)
RV_SCALAR_MEMBERS(RVNumber, float)
RV_SCALAR_MEMBERS(RVNumber, double)

RV_SCALAR_COMPARISONS(RVNumber, bool)
RV_SCALAR_COMPARISONS(RVNumber, char)
RV_SCALAR_COMPARISONS(RVNumber, unsigned char)
RV_SCALAR_COMPARISONS(RVNumber, short)
RV_SCALAR_COMPARISONS(RVNumber, unsigned short)
RV_SCALAR_COMPARISONS(RVNumber, int)
RV_SCALAR_COMPARISONS(RVNumber, unsigned int)
RV_SCALAR_COMPARISONS(RVNumber, long)
RV_SCALAR_COMPARISONS(RVNumber, unsigned long)
RV_SCALAR_COMPARISONS(RVNumber, float)
RV_SCALAR_COMPARISONS(RVNumber, double)

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
bool RVNumber::operator==(RVBool value) const {
  return static_cast<bool>(value) == RVScalarValue<bool>(Ref());
}
bool RVNumber::operator!=(const RVNumber& other) const { return !operator==(other); }
bool RVNumber::operator!=(RVBool value) const {
  RVBool copy(value);
  return !operator==(copy);
}

int RVNumber::TypeOfNumber() const { return 0; }

// Only the one-letter codes of double and float count; nil has no code.
bool RVNumber::IsFloatType() const {
  const char* code = [Ref() objCType];
  return code != nullptr && (code[0] == 'd' || code[0] == 'f') && code[1] == '\0';
}

RVString RVNumber::ToString() const { return RVString(static_cast<RVId>([Ref() description])); }
RVString RVNumber::StringValue() const { return ToString(); }

RVNumber& RVNumber::False() {
  static RVNumber zero(false);
  return zero;
}

RVString RVNumber::ClassType() { return RVString(RVClassTypeText(typeid(RVNumber))); }
