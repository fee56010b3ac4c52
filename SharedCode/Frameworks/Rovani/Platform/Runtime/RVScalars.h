// Scalars in and out of number boxes, shared by numbers and values.
#ifndef ROVANI_PLATFORM_RVSCALARS_H
#define ROVANI_PLATFORM_RVSCALARS_H

#import <Foundation/Foundation.h>

// Messages whose answer comes back in a floating-point or structure register
// are undefined on nil with this runtime (the nil method only clears the
// integer register), so these answer 0 for nil themselves.
inline double RVDoubleValue(id obj) { return obj ? [obj doubleValue] : 0.0; }
inline float RVFloatValue(id obj) { return obj ? [obj floatValue] : 0.0f; }

// What a box answers at the width of T; nil answers 0.
template <typename T>
T RVScalarValue(id obj);
template <> inline bool RVScalarValue<bool>(id obj) { return [obj boolValue] ? true : false; }
template <> inline char RVScalarValue<char>(id obj) { return [obj charValue]; }
template <> inline unsigned char RVScalarValue<unsigned char>(id obj) {
  return [obj unsignedCharValue];
}
template <> inline short RVScalarValue<short>(id obj) { return [obj shortValue]; }
template <> inline unsigned short RVScalarValue<unsigned short>(id obj) {
  return [obj unsignedShortValue];
}
template <> inline int RVScalarValue<int>(id obj) { return [obj intValue]; }
template <> inline unsigned int RVScalarValue<unsigned int>(id obj) {
  return [obj unsignedIntValue];
}
template <> inline long RVScalarValue<long>(id obj) { return [obj longValue]; }
template <> inline unsigned long RVScalarValue<unsigned long>(id obj) {
  return [obj unsignedLongValue];
}
template <> inline float RVScalarValue<float>(id obj) { return RVFloatValue(obj); }
template <> inline double RVScalarValue<double>(id obj) { return RVDoubleValue(obj); }

// Whether a box equals value when read at value's own width.
template <typename T>
bool RVScalarEquals(id obj, T value) {
  return RVScalarValue<T>(obj) == value;
}

// A new number (+1) made by the initialiser of the value's own width. A
// signed char is the platform's BOOL and is kept as it is, not reduced to
// 0 or 1; a C++ bool is.
inline NSNumber* RVNewNumber(bool value) { return [[NSNumber alloc] initWithBool:value ? YES : NO]; }
inline NSNumber* RVNewNumber(signed char value) { return [[NSNumber alloc] initWithBool:value]; }
inline NSNumber* RVNewNumber(char value) { return [[NSNumber alloc] initWithChar:value]; }
inline NSNumber* RVNewNumber(unsigned char value) {
  return [[NSNumber alloc] initWithUnsignedChar:value];
}
inline NSNumber* RVNewNumber(short value) { return [[NSNumber alloc] initWithShort:value]; }
inline NSNumber* RVNewNumber(unsigned short value) {
  return [[NSNumber alloc] initWithUnsignedShort:value];
}
inline NSNumber* RVNewNumber(int value) { return [[NSNumber alloc] initWithInt:value]; }
inline NSNumber* RVNewNumber(unsigned int value) {
  return [[NSNumber alloc] initWithUnsignedInt:value];
}
inline NSNumber* RVNewNumber(long value) { return [[NSNumber alloc] initWithLong:value]; }
inline NSNumber* RVNewNumber(unsigned long value) {
  return [[NSNumber alloc] initWithUnsignedLong:value];
}
inline NSNumber* RVNewNumber(float value) { return [[NSNumber alloc] initWithFloat:value]; }
inline NSNumber* RVNewNumber(double value) { return [[NSNumber alloc] initWithDouble:value]; }

// The members of a number-like handle for one C scalar type: construction,
// assignment, conversion back, and comparison at that width. Each file that
// uses them defines Adopt(handle, made), which decides how the handle takes
// the +1 number it is given.
#define RV_SCALAR_MEMBERS(Class, Type)                                      \
  Class::Class(Type value) : RVObject() { operator=(value); }               \
  Class& Class::operator=(Type value) {                                     \
    Adopt(*this, RVNewNumber(value));                                       \
    return *this;                                                           \
  }                                                                         \
  Class::operator Type() const { return RVScalarValue<Type>(Ref()); }

#define RV_SCALAR_COMPARISONS(Class, Type)                                              \
  bool Class::operator==(Type value) const { return RVScalarEquals(Ref(), value); } \
  bool Class::operator!=(Type value) const { return !operator==(value); }

#endif
