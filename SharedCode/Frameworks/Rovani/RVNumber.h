/// \file
/// RVNumber, a number handle built from and read as any C scalar.
#ifndef ROVANI_RVNUMBER_H
#define ROVANI_RVNUMBER_H

#include <Rovani/RVBool.h>
#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

/// A handle on an NSNumber, built from and read as any C scalar.
///
/// A number is not a boolean: booleans are RVBool, held as the library's
/// own boolean objects, so that a tree of handles tells the two apart by
/// class. RVNumber(bool) makes a platform number that a property list keeps
/// as a boolean. No member checks that the held object is a number.
class RV_EXPORT RVNumber : public RVObject {
 public:
  /// An empty (nil) number.
  RVNumber();
  /// Shares the other's number.
  RVNumber(const RVNumber& other);
  /// Holds the object, retained. An RVId is taken as it is, without a class
  /// test.
  ///@{
  RVNumber(RVId obj);
  RVNumber(NSNumber* number);
  ///@}
  /// A platform number made from the boolean's truth (not the boolean's own
  /// object).
  RVNumber(RVBool boolean);
  /// A new number made from \p value, at the width and kind of its type.
  /// \note There is deliberately no signed char member: signed char is the
  ///   platform's boolean type.
  ///@{
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
  ///@}
  /// Releases the number.
  ~RVNumber() override;

  /// Shares the other's number.
  RVNumber& operator=(const RVNumber& other);
  /// Holds the object, retained. An RVId is taken as it is, without a class
  /// test.
  ///@{
  RVNumber& operator=(RVId obj);
  RVNumber& operator=(NSNumber* number);
  ///@}
  /// A platform number made from the boolean's truth.
  RVNumber& operator=(RVBool boolean);
  /// Holds a new number made from \p value (no signed char form).
  ///@{
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
  ///@}

  /// The number read as the target type, by Foundation's conversion.
  /// \return the value; 0 (or false) for an empty number.
  ///@{
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
  ///@}
  /// The number's truth (0 or 1), not its char value.
  /// \note Deliberate: signed char is the platform's boolean type, so
  ///   RVNumber(5) read as signed char gives 1, while read as char it gives 5.
  /// \return 1 for a non-zero number, else 0.
  operator signed char() const;
  /// The number's truth as a boolean handle.
  /// \return the shared true or false boolean.
  operator RVBool() const;
  /// The held NSNumber, not retained; nil for an empty number.
  operator NSNumber*() const;

  /// Equality of the numbers, as Foundation compares them.
  /// \return whether both hold equal numbers.
  bool operator==(const RVNumber& other) const;
  /// Compared exactly at the width of the argument; no tolerance for floats.
  ///
  /// The number is read as the argument's type first: RVNumber(300) equals
  /// (unsigned char)44, and RVNumber(0.1f) does not equal 0.1. A NaN is
  /// never equal. bool and RVBool compare the number's truth.
  /// \return whether the number, read as that type, equals \p value.
  ///@{
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
  ///@}
  /// The negation of operator==(const RVNumber&).
  bool operator!=(const RVNumber& other) const;
  /// The negation of the matching operator== (a NaN always differs).
  /// \return whether the number, read as that type, differs from \p value.
  ///@{
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
  ///@}

  /// Always 0, whatever the number holds.
  /// \note Kept by design; use IsFloatType() to tell kinds apart.
  /// \return 0.
  int TypeOfNumber() const;
  /// True for numbers made from float or double.
  /// \return whether the number is a real; false for integers, booleans
  ///   and an empty number.
  bool IsFloatType() const;
  /// The number as Foundation describes it.
  /// \return the text, such as "42" or "2.5".
  RVString ToString() const;
  /// The same as ToString().
  RVString StringValue() const;

  /// The shared number made from false.
  /// \return the same number on every call, made on first use.
  static RVNumber& False();
  /// The class type, "RVNumber".
  static RVString ClassType();
};

#endif
