/// \file
/// RVBool, the boolean handle, and the shared boolean objects it holds.
#ifndef ROVANI_RVBOOL_H
#define ROVANI_RVBOOL_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

/// The shared true instance; nil until first made, never freed.
RV_EXPORT extern RVId trueBoolNumberConst;
/// The shared false instance; nil until first made, never freed.
RV_EXPORT extern RVId falseBoolNumberConst;

#if defined(__OBJC__)
#import <Foundation/NSObject.h>

__attribute__((visibility("default")))
@interface BoolNumber : NSObject {
  char boolValue;  // the byte as given, 2 included
}
// The truth values are BOOL's own type, unsigned char, spelled as such: a
// byte other than 0 or 1 is kept as it came, and a BOOL-typed parameter
// would hold a value its type does not allow.
// The shared instance for the value, neither retained nor autoreleased.
+ (id)boolNumberWithBool:(unsigned char)value;
+ (id)trueBoolNumber;
+ (id)falseBoolNumber;
// Answers the shared instance when it exists (true only for exactly 1,
// false for every other value); otherwise initialises the receiver and makes
// it the shared instance of its truth.
- (id)initWithBool:(unsigned char)value;
- (unsigned char)boolValue;
- (NSString*)description;
@end
#endif

/// A boolean handle. Booleans made by the library are one of the two
/// shared BoolNumber instances, so a boolean is told apart from a number by
/// its class.
///
/// `BoolNumber` is an Objective-C class the library registers (declared in
/// this header for Objective-C++ callers only). Exactly one instance exists
/// per truth, made on first use and never freed; it describes itself as
/// "true" or "false". A platform number made from a bool (RVNumber(bool))
/// is a number here, not a boolean, though an RVBool can read it.
///
/// \note A property list written by the library holds `BoolNumber` as
///   `<true/>` or `<false/>`, which reads back as a platform boolean
///   (an RVNumber(bool)), not as an RVBool. The user-defaults stores refuse
///   it: store RVNumber(bool) there.
/// \note The two shared instances are made without a lock: a program that
///   uses booleans from several threads makes both (True() and False())
///   before its threads start.
class RV_EXPORT RVBool : public RVObject {
 public:
  /// False, not empty.
  RVBool();
  /// The shared instance of \p value's truth: integers are true when
  /// non-zero at the width of their type (negative values are true).
  /// \param value the truth, as a bool or an integer.
  ///@{
  RVBool(bool value);
  RVBool(char value);
  RVBool(signed char value);
  RVBool(unsigned char value);
  RVBool(short value);
  RVBool(unsigned short value);
  RVBool(int value);
  RVBool(unsigned int value);
  RVBool(long value);
  RVBool(unsigned long value);
  ///@}
  /// Takes the shared instance of the other's truth, not its object.
  /// So a copy of a boolean that wraps a platform number holds a
  /// `BoolNumber`.
  /// \param other the boolean whose truth is taken.
  RVBool(const RVBool& other);
  /// Wraps any object that answers boolValue; nil gives an empty boolean.
  /// An empty boolean reads as false.
  /// \param obj the object, retained as it is, or nil.
  RVBool(RVId obj);
  /// Releases the held object.
  ~RVBool() override;

  /// Holds the shared instance of \p value's truth (integers: non-zero at
  /// their width).
  /// \param value the truth, as a bool or an integer.
  ///@{
  RVBool& operator=(bool value);
  RVBool& operator=(char value);
  RVBool& operator=(signed char value);
  RVBool& operator=(unsigned char value);
  RVBool& operator=(short value);
  RVBool& operator=(unsigned short value);
  RVBool& operator=(int value);
  RVBool& operator=(unsigned int value);
  RVBool& operator=(long value);
  RVBool& operator=(unsigned long value);
  ///@}
  /// Holds the shared instance of the other's truth.
  /// \param other the boolean whose truth is taken.
  RVBool& operator=(const RVBool& other);
  /// Holds \p obj as it is, retained, without a class test.
  /// \param obj an object that answers boolValue, or nil.
  RVBool& operator=(RVId obj);

  /// The truth.
  /// \return the held object's boolValue, non-zero read as true; false for
  ///   an empty boolean.
  operator bool() const;
  /// The truth as the platform's boolean type.
  /// \return 1 or 0, as operator bool().
  operator signed char() const;
  /// The negated truth.
  /// \return the negation of operator bool().
  bool operator!() const;

  /// Each side reduced to true or false (integers: non-zero at their width).
  ///@{
  bool operator==(bool value) const;
  bool operator==(char value) const;
  bool operator==(signed char value) const;
  bool operator==(unsigned char value) const;
  bool operator==(short value) const;
  bool operator==(unsigned short value) const;
  bool operator==(int value) const;
  bool operator==(unsigned int value) const;
  bool operator==(long value) const;
  bool operator==(unsigned long value) const;
  ///@}
  /// Both truths compared.
  bool operator==(const RVBool& other) const;
  /// Each side reduced to true or false, as for operator==: RVBool(false)
  /// != 3 is true, RVBool(false) != 0 is false.
  ///@{
  bool operator!=(bool value) const;
  bool operator!=(char value) const;
  bool operator!=(signed char value) const;
  bool operator!=(unsigned char value) const;
  bool operator!=(short value) const;
  bool operator!=(unsigned short value) const;
  bool operator!=(int value) const;
  bool operator!=(unsigned int value) const;
  bool operator!=(long value) const;
  bool operator!=(unsigned long value) const;
  ///@}
  /// Both truths compared.
  bool operator!=(const RVBool& other) const;

  /// The shared true instance (True(), Yes()) or false instance (False(),
  /// No()).
  /// \return a new handle on the shared instance.
  ///@{
  static RVBool True();
  static RVBool False();
  static RVBool Yes();
  static RVBool No();
  ///@}
  /// The class type, "RVBool".
  static RVString ClassType();
};

#endif
