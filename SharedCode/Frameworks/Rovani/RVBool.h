// RVBool: a boolean handle. Booleans made by the library are one of the two
// shared BoolNumber instances, so a boolean is told apart from a number by
// its class.
#ifndef ROVANI_RVBOOL_H
#define ROVANI_RVBOOL_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

// The shared true and false instances; nil until first made, never freed.
RV_EXPORT extern RVId trueBoolNumberConst;
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

class RV_EXPORT RVBool : public RVObject {
 public:
  // False, not empty.
  RVBool();
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
  // Takes the shared instance of the other's truth, not its object.
  RVBool(const RVBool& other);
  // Wraps any object that answers boolValue; nil gives an empty boolean.
  RVBool(RVId obj);
  ~RVBool() override;

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
  RVBool& operator=(const RVBool& other);
  RVBool& operator=(RVId obj);

  operator bool() const;
  operator signed char() const;
  bool operator!() const;

  // Each side reduced to true or false (integers: non-zero at their width).
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
  bool operator==(const RVBool& other) const;
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
  bool operator!=(const RVBool& other) const;

  static RVBool True();
  static RVBool False();
  static RVBool Yes();
  static RVBool No();
  static RVString ClassType();
};

#endif
