/// \file
/// RVValue, a boxed pointer or small scalar.
#ifndef ROVANI_RVVALUE_H
#define ROVANI_RVVALUE_H

#include <Rovani/RVBool.h>
#include <Rovani/RVDefines.h>
#include <Rovani/RVNumber.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

/// A handle on an NSValue, mostly a box around a raw pointer or a small
/// integer. Scalars are boxed as autoreleased numbers: keep a pool.
///
/// A near twin of RVNumber with deliberate differences: no float or double
/// members, a signed char box keeps its raw value, operator==(signed char)
/// counts only 1 as true, operator!=(char) compares boxes, and the NSValue*
/// comparisons ask the argument rather than this value.
class RV_EXPORT RVValue : public RVObject {
 public:
  /// An empty value.
  RVValue();
  /// Shares the other's box.
  RVValue(const RVValue& other);
  /// Shares the number's object (a number is a kind of value).
  RVValue(const RVNumber& number);
  /// Holds \p value, retained.
  RVValue(NSValue* value);
  /// A boolean box (0 or 1), autoreleased: needs a pool.
  RVValue(bool value);
  /// A boolean box holding the raw value (not reduced to 0 or 1).
  /// \param value the byte boxed as it is.
  RVValue(signed char value);
  /// A box of \p value at the width of its type, made as an autoreleased
  /// number: needs a pool.
  ///@{
  RVValue(char value);
  RVValue(unsigned char value);
  RVValue(short value);
  RVValue(unsigned short value);
  RVValue(int value);
  RVValue(unsigned int value);
  RVValue(long value);
  RVValue(unsigned long value);
  ///@}
  /// Releases the box.
  ~RVValue() override;

  /// Shares the other's box.
  RVValue& operator=(const RVValue& other);
  /// Shares the number's object.
  RVValue& operator=(const RVNumber& number);
  /// Holds \p value, retained.
  RVValue& operator=(NSValue* value);
  /// Holds a new box of \p value, as the matching constructor makes it
  /// (autoreleased: needs a pool).
  ///@{
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
  ///@}

  /// Holds a box around \p pointer (autoreleased by the platform).
  /// \param pointer the pointer boxed; null makes a box holding null, not
  ///   an empty value.
  RVValue& SetValueFromPointer(const void* pointer);
  /// A new value boxing \p pointer.
  /// \param pointer the pointer boxed, null included.
  /// \return the value; never empty.
  static RVValue ValueFromPointer(const void* pointer);
  /// The boxed pointer.
  /// \return the pointer; null for an empty value.
  void* PointerValue() const;

  /// The truth of the box.
  /// \return the box's boolValue, non-zero read as true.
  operator bool() const;
  /// The truth, as for numbers (not the char value).
  /// \return 1 for a non-zero box, else 0.
  operator signed char() const;  // the truth, as for numbers
  /// The box read as the target type, by Foundation's conversion.
  /// \return the value; 0 for an empty value.
  ///@{
  operator char() const;
  operator unsigned char() const;
  operator short() const;
  operator unsigned short() const;
  operator int() const;
  operator unsigned int() const;
  operator long() const;
  operator unsigned long() const;
  ///@}
  /// The truth of the box as a boolean handle.
  /// \return the shared true or false boolean.
  operator RVBool() const;
  /// The held NSValue, not retained; nil for an empty value.
  operator NSValue*() const;

  /// Equality of the boxes (`isEqualToValue:`).
  /// \return whether the boxes are equal; false for an empty value.
  bool operator==(const RVValue& other) const;
  /// Equality of this box and the number (`isEqualToValue:`).
  /// \return whether they are equal; false for an empty value.
  bool operator==(const RVNumber& other) const;
  /// Asks the argument, not this value: nil is never equal.
  /// \return whether \p other equals this box; false for nil.
  bool operator==(NSValue* other) const;
  /// The box read as the argument's type and compared exactly at its width
  /// (bool: the box's truth).
  ///@{
  bool operator==(unsigned char value) const;
  bool operator==(short value) const;
  bool operator==(unsigned short value) const;
  bool operator==(int value) const;
  bool operator==(unsigned int value) const;
  bool operator==(long value) const;
  bool operator==(unsigned long value) const;
  bool operator==(char value) const;
  bool operator==(bool value) const;
  ///@}
  /// Only the value 1 counts as true.
  /// \note By design RVValue(true) == (signed char)2 is false, while
  ///   RVValue(true) == true is true.
  /// \param value the truth compared with; only 1 is true.
  /// \return whether (\p value is 1) equals the box's truth.
  bool operator==(signed char value) const;
  /// The negation of operator==(const RVValue&).
  bool operator!=(const RVValue& other) const;
  /// The negation of operator==(const RVNumber&).
  bool operator!=(const RVNumber& other) const;
  /// Asks the argument, as operator==(NSValue*) does, and negates.
  /// \return whether they differ; true for nil.
  bool operator!=(NSValue* other) const;
  /// The negation of the matching operator==.
  ///@{
  bool operator!=(unsigned char value) const;
  bool operator!=(short value) const;
  bool operator!=(unsigned short value) const;
  bool operator!=(int value) const;
  bool operator!=(unsigned int value) const;
  bool operator!=(long value) const;
  bool operator!=(unsigned long value) const;
  ///@}
  /// Compares boxes (isEqualToValue: with a char box), so it is not always
  /// the negation of operator==(char).
  /// \return whether this box differs from a char box of \p value.
  bool operator!=(char value) const;
  /// The negation of operator==(bool).
  bool operator!=(bool value) const;
  /// The negation of operator==(signed char): only 1 counts as true.
  /// \param value the truth compared with; only 1 is true.
  bool operator!=(signed char value) const;

  /// The shared value made from false.
  /// \return the same value on every call, made on first use.
  static RVValue& False();
  /// The class type, "RVValue".
  static RVString ClassType();
};

#endif
