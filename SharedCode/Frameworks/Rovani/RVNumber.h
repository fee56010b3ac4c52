// RVNumber: a handle on an NSNumber, built from and read as any C scalar.
#ifndef ROVANI_RVNUMBER_H
#define ROVANI_RVNUMBER_H

#include <Rovani/RVBool.h>
#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

class RV_EXPORT RVNumber : public RVObject {
 public:
  RVNumber();
  RVNumber(const RVNumber& other);
  RVNumber(RVId obj);
  RVNumber(NSNumber* number);
  RVNumber(RVBool boolean);
  // There is deliberately no signed char member: signed char is the
  // platform's boolean type.
  RVNumber(bool value);
  RVNumber(char value);
  RVNumber(unsigned char value);
  RVNumber(short value);
  RVNumber(unsigned short value);
  RVNumber(int value);
  RVNumber(unsigned int value);
  RVNumber(long value);
  RVNumber(unsigned long value);
  RVNumber(float value);
  RVNumber(double value);
  ~RVNumber() override;

  RVNumber& operator=(const RVNumber& other);
  RVNumber& operator=(RVId obj);
  RVNumber& operator=(NSNumber* number);
  RVNumber& operator=(RVBool boolean);
  RVNumber& operator=(bool value);
  RVNumber& operator=(char value);
  RVNumber& operator=(unsigned char value);
  RVNumber& operator=(short value);
  RVNumber& operator=(unsigned short value);
  RVNumber& operator=(int value);
  RVNumber& operator=(unsigned int value);
  RVNumber& operator=(long value);
  RVNumber& operator=(unsigned long value);
  RVNumber& operator=(float value);
  RVNumber& operator=(double value);

  operator char() const;
  operator unsigned char() const;
  operator short() const;
  operator unsigned short() const;
  operator int() const;
  operator unsigned int() const;
  operator long() const;
  operator unsigned long() const;
  operator float() const;
  operator double() const;
  operator bool() const;
  // The number's truth (0 or 1), not its char value.
  operator signed char() const;
  operator RVBool() const;
  operator NSNumber*() const;

  // Compared exactly at the width of the argument; no tolerance for floats.
  bool operator==(const RVNumber& other) const;
  bool operator==(char value) const;
  bool operator==(unsigned char value) const;
  bool operator==(short value) const;
  bool operator==(unsigned short value) const;
  bool operator==(int value) const;
  bool operator==(unsigned int value) const;
  bool operator==(long value) const;
  bool operator==(unsigned long value) const;
  bool operator==(float value) const;
  bool operator==(double value) const;
  bool operator==(bool value) const;
  bool operator==(RVBool value) const;
  bool operator!=(const RVNumber& other) const;
  bool operator!=(char value) const;
  bool operator!=(unsigned char value) const;
  bool operator!=(short value) const;
  bool operator!=(unsigned short value) const;
  bool operator!=(int value) const;
  bool operator!=(unsigned int value) const;
  bool operator!=(long value) const;
  bool operator!=(unsigned long value) const;
  bool operator!=(float value) const;
  bool operator!=(double value) const;
  bool operator!=(bool value) const;
  bool operator!=(RVBool value) const;

  // Always 0, whatever the number holds.
  int TypeOfNumber() const;
  // True for numbers made from float or double.
  bool IsFloatType() const;
  RVString ToString() const;
  RVString StringValue() const;

  // The shared number made from false.
  static RVNumber& False();
  static RVString ClassType();
};

#endif
