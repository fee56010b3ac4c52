// RVValue: a handle on an NSValue, mostly a box around a raw pointer or a
// small integer. Scalars are boxed as autoreleased numbers: keep a pool.
#ifndef ROVANI_RVVALUE_H
#define ROVANI_RVVALUE_H

#include <Rovani/RVBool.h>
#include <Rovani/RVDefines.h>
#include <Rovani/RVNumber.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

class RV_EXPORT RVValue : public RVObject {
 public:
  RVValue();
  RVValue(const RVValue& other);
  RVValue(const RVNumber& number);
  RVValue(NSValue* value);
  RVValue(bool value);
  // A boolean box holding the raw value (not reduced to 0 or 1).
  RVValue(signed char value);
  RVValue(char value);
  RVValue(unsigned char value);
  RVValue(short value);
  RVValue(unsigned short value);
  RVValue(int value);
  RVValue(unsigned int value);
  RVValue(long value);
  RVValue(unsigned long value);
  ~RVValue() override;

  RVValue& operator=(const RVValue& other);
  RVValue& operator=(const RVNumber& number);
  RVValue& operator=(NSValue* value);
  RVValue& operator=(bool value);
  RVValue& operator=(signed char value);
  RVValue& operator=(char value);
  RVValue& operator=(unsigned char value);
  RVValue& operator=(short value);
  RVValue& operator=(unsigned short value);
  RVValue& operator=(int value);
  RVValue& operator=(unsigned int value);
  RVValue& operator=(long value);
  RVValue& operator=(unsigned long value);

  RVValue& SetValueFromPointer(const void* pointer);
  static RVValue ValueFromPointer(const void* pointer);
  void* PointerValue() const;

  operator bool() const;
  operator signed char() const;  // the truth, as for numbers
  operator char() const;
  operator unsigned char() const;
  operator short() const;
  operator unsigned short() const;
  operator int() const;
  operator unsigned int() const;
  operator long() const;
  operator unsigned long() const;
  operator RVBool() const;
  operator NSValue*() const;

  bool operator==(const RVValue& other) const;
  bool operator==(const RVNumber& other) const;
  // Asks the argument, not this value: nil is never equal.
  bool operator==(NSValue* other) const;
  bool operator==(unsigned char value) const;
  bool operator==(short value) const;
  bool operator==(unsigned short value) const;
  bool operator==(int value) const;
  bool operator==(unsigned int value) const;
  bool operator==(long value) const;
  bool operator==(unsigned long value) const;
  bool operator==(char value) const;
  bool operator==(bool value) const;
  // Only the value 1 counts as true.
  bool operator==(signed char value) const;
  bool operator!=(const RVValue& other) const;
  bool operator!=(const RVNumber& other) const;
  bool operator!=(NSValue* other) const;
  bool operator!=(unsigned char value) const;
  bool operator!=(short value) const;
  bool operator!=(unsigned short value) const;
  bool operator!=(int value) const;
  bool operator!=(unsigned int value) const;
  bool operator!=(long value) const;
  bool operator!=(unsigned long value) const;
  // Compares boxes (isEqualToValue: with a char box), so it is not always
  // the negation of operator==(char).
  bool operator!=(char value) const;
  bool operator!=(bool value) const;
  bool operator!=(signed char value) const;

  static RVValue& False();
  static RVString ClassType();
};

#endif
