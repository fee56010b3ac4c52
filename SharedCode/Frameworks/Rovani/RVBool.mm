#import <Foundation/Foundation.h>

#include <Rovani/RVBool.h>

#include "Platform/Runtime/RVClassType.h"

RVId trueBoolNumberConst = nil;
RVId falseBoolNumberConst = nil;

@implementation BoolNumber

+ (id)boolNumberWithBool:(unsigned char)value {
  return value ? [self trueBoolNumber] : [self falseBoolNumber];
}

+ (id)trueBoolNumber {
  if (trueBoolNumberConst != nil) return trueBoolNumberConst;
  trueBoolNumberConst = [[BoolNumber alloc] initWithBool:YES];
  return trueBoolNumberConst;
}

+ (id)falseBoolNumber {
  if (falseBoolNumberConst != nil) return falseBoolNumberConst;
  falseBoolNumberConst = [[BoolNumber alloc] initWithBool:NO];
  return falseBoolNumberConst;
}

- (id)initWithBool:(unsigned char)value {
  // Only exactly 1 looks at the true instance; the store below goes by
  // non-zero. Callers reach this through the class methods.
  id shared = (value == 1) ? trueBoolNumberConst : falseBoolNumberConst;
  if (shared != nil) return shared;
  self = [super init];
  if (self == nil) return nil;
  boolValue = value;
  if (value)
    trueBoolNumberConst = self;
  else
    falseBoolNumberConst = self;
  return self;
}

- (id)init {
  return [self initWithBool:NO];
}

- (unsigned char)boolValue {
  return boolValue;
}

- (NSString*)description {
  return [self boolValue] ? @"true" : @"false";
}

@end

RVBool::RVBool() : RVObject(BoolToRVId(false)) {}
RVBool::RVBool(bool value) : RVObject(BoolToRVId(value)) {}
RVBool::RVBool(char value) : RVObject(BoolToRVId(value != 0)) {}
RVBool::RVBool(signed char value) : RVObject(BoolToRVId(value != 0)) {}
RVBool::RVBool(unsigned char value) : RVObject(BoolToRVId(value != 0)) {}
RVBool::RVBool(short value) : RVObject(BoolToRVId(value != 0)) {}
RVBool::RVBool(unsigned short value) : RVObject(BoolToRVId(value != 0)) {}
RVBool::RVBool(int value) : RVObject(BoolToRVId(value != 0)) {}
RVBool::RVBool(unsigned int value) : RVObject(BoolToRVId(value != 0)) {}
RVBool::RVBool(long value) : RVObject(BoolToRVId(value != 0)) {}
RVBool::RVBool(unsigned long value) : RVObject(BoolToRVId(value != 0)) {}
RVBool::RVBool(const RVBool& other) : RVObject(BoolToRVId(static_cast<bool>(other))) {}
RVBool::RVBool(RVId obj) : RVObject(obj) {}
RVBool::~RVBool() {}

RVBool& RVBool::operator=(bool value) {
  RVObject::operator=(BoolToRVId(value));
  return *this;
}
RVBool& RVBool::operator=(char value) { return operator=(value != 0); }
RVBool& RVBool::operator=(signed char value) { return operator=(value != 0); }
RVBool& RVBool::operator=(unsigned char value) { return operator=(value != 0); }
RVBool& RVBool::operator=(short value) { return operator=(value != 0); }
RVBool& RVBool::operator=(unsigned short value) { return operator=(value != 0); }
RVBool& RVBool::operator=(int value) { return operator=(value != 0); }
RVBool& RVBool::operator=(unsigned int value) { return operator=(value != 0); }
RVBool& RVBool::operator=(long value) { return operator=(value != 0); }
RVBool& RVBool::operator=(unsigned long value) { return operator=(value != 0); }
RVBool& RVBool::operator=(const RVBool& other) { return operator=(static_cast<bool>(other)); }
RVBool& RVBool::operator=(RVId obj) {
  RVObject::operator=(obj);
  return *this;
}

RVBool::operator bool() const { return [Ref() boolValue] ? true : false; }
RVBool::operator signed char() const { return static_cast<bool>(*this) ? 1 : 0; }
bool RVBool::operator!() const { return !static_cast<bool>(*this); }

bool RVBool::operator==(bool value) const { return static_cast<bool>(*this) == value; }
bool RVBool::operator==(char value) const { return operator==(value != 0); }
bool RVBool::operator==(signed char value) const { return operator==(value != 0); }
bool RVBool::operator==(unsigned char value) const { return operator==(value != 0); }
bool RVBool::operator==(short value) const { return operator==(value != 0); }
bool RVBool::operator==(unsigned short value) const { return operator==(value != 0); }
bool RVBool::operator==(int value) const { return operator==(value != 0); }
bool RVBool::operator==(unsigned int value) const { return operator==(value != 0); }
bool RVBool::operator==(long value) const { return operator==(value != 0); }
bool RVBool::operator==(unsigned long value) const { return operator==(value != 0); }
bool RVBool::operator==(const RVBool& other) const {
  return operator==(static_cast<bool>(other));
}
bool RVBool::operator!=(bool value) const { return !operator==(value); }
bool RVBool::operator!=(char value) const { return !operator==(value); }
bool RVBool::operator!=(signed char value) const { return !operator==(value); }
bool RVBool::operator!=(unsigned char value) const { return !operator==(value); }
bool RVBool::operator!=(short value) const { return !operator==(value); }
bool RVBool::operator!=(unsigned short value) const { return !operator==(value); }
bool RVBool::operator!=(int value) const { return !operator==(value); }
bool RVBool::operator!=(unsigned int value) const { return !operator==(value); }
bool RVBool::operator!=(long value) const { return !operator==(value); }
bool RVBool::operator!=(unsigned long value) const { return !operator==(value); }
bool RVBool::operator!=(const RVBool& other) const { return !operator==(other); }

RVBool RVBool::True() { return RVBool(true); }
RVBool RVBool::False() { return RVBool(false); }
RVBool RVBool::Yes() { return RVBool(true); }
RVBool RVBool::No() { return RVBool(false); }
RVString RVBool::ClassType() { return RVString(RVClassTypeText(typeid(RVBool))); }
