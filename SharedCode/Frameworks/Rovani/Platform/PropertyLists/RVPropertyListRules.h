// What every property-list writer of the library agrees on, kept in one
// place so that the formats take and refuse the same lists: the classes a
// list may hold, the characters its text may hold, the dates it may hold,
// how deep and how large it may be, which numbers have an exact form, and
// how a refused value's key path is spelled.
#ifndef ROVANI_PLATFORM_RVPROPERTYLISTRULES_H
#define ROVANI_PLATFORM_RVPROPERTYLISTRULES_H

#import <Foundation/Foundation.h>
#include <objc/runtime.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Platform/PropertyLists/RVFormatFault.h"
#include "Platform/PropertyLists/RVPropertyList.h"

// The kinds of value a list may hold. Booleans are the platform's boolean
// numbers and the library's BoolNumber; Decimal is NSDecimalNumber, which
// has an exact form only when a double holds its value exactly.
enum class RVPlistKind : unsigned char {
  String, Boolean, Number, Decimal, Date, Data, Dictionary, Array, Null, Other
};

// What a writer needs of one class: its kind and the methods it calls on
// its instances (which ones depends on the kind, see Learn).
struct RVPlistClassInfo {
  Class cls = Nil;
  RVPlistKind kind = RVPlistKind::Other;
  IMP first = nullptr;
  IMP second = nullptr;
  IMP third = nullptr;
  IMP fourth = nullptr;
};

// The class of each object, found once per class and kept in a small
// table: settings documents are made of few concrete classes met many
// times, so each object costs a table probe and direct calls instead of a
// chain of -isKindOfClass: tests and a method look-up per message.
//   String: length, getCharacters:range:   Boolean: boolValue
//   Number: objCType, longLongValue, unsignedLongLongValue, doubleValue
//   Decimal: doubleValue   Date: timeIntervalSinceReferenceDate
//   Data: bytes, length    Dictionary: count, getObjects:andKeys:
//   Array: count, getObjects:
//
// The table is the calling thread's and outlives each write: a write of one
// small value (a defaults journal record) would otherwise spend much of its
// time learning the same few classes again.
class RVPropertyListClasses {
 public:
  RVPropertyListClasses();

  const RVPlistClassInfo& Of(id object) {
    Class cls = object_getClass(object);
    RVPlistClassInfo& slot = slots_[(reinterpret_cast<uintptr_t>(cls) >> 4) % kSlots];
    if (slot.cls != cls) Learn(object, cls, &slot);
    return slot;
  }

 private:
  void Learn(id object, Class cls, RVPlistClassInfo* info);

  static constexpr size_t kSlots = 64;
  Class string_, number_, decimal_, platformBool_, libraryBool_, date_, data_, dictionary_,
      array_, null_;
  RVPlistClassInfo* slots_;  // kSlots entries, the thread's own
};

// The UTF-16 units of a string of kind String appended to *units; answers
// how many.
inline size_t RVPropertyListUnits(id string, const RVPlistClassInfo& info,
                                  std::vector<unichar>* units) {
  NSUInteger length = reinterpret_cast<NSUInteger (*)(id, SEL)>(info.first)(string, @selector(length));
  size_t start = units->size();
  units->resize(start + length);
  if (length > 0)
    reinterpret_cast<void (*)(id, SEL, unichar*, NSRange)>(info.second)(
        string, @selector(getCharacters:range:), units->data() + start, NSMakeRange(0, length));
  return length;
}

// A number's exact value: an integer of up to 64 bits, signed or unsigned,
// or a double; Refused for a number with no exact form (an unknown type, a
// decimal no double holds exactly).
struct RVPlistNumber {
  enum Type { Signed, Unsigned, Real, Refused } type = Refused;
  long long signedValue = 0;
  unsigned long long unsignedValue = 0;
  double real = 0;
};
RVPlistNumber RVPropertyListNumber(id number, const RVPlistClassInfo& info);

// The characters text may hold: what XML 1.0 can (tab, LF, CR and
// everything from U+0020 but U+FFFE and U+FFFF), with surrogates in pairs.
// Answers the index of the first unit that breaks the rule, or count.
size_t RVPropertyListForbiddenUnit(const unichar* units, size_t count);
inline bool RVPropertyListAllowedControl(unichar c) { return c == '\t' || c == '\n' || c == '\r'; }

// Dates from 0001-01-01T00:00:00Z to 9999-12-31T23:59:59.999Z, seconds
// since 2001-01-01 (NaN is outside).
inline bool RVPropertyListDateInRange(double seconds) {
  return seconds >= -63113904000.0 && seconds < 252423993600.0;
}

// Why a writer refused a list, and the key path of the value refused.
// Writers refuse where they meet the value and add the path on the way
// out, innermost first, so that nothing is spent on paths while a write
// goes well. Each call answers false for a writer to pass on.
class RVPropertyListRefusal {
 public:
  bool Refuse(std::string message);
  bool Null() { return Refuse("a null value"); }
  bool OtherClass(id object);
  bool NonStringKey() { return Refuse("a non-string key"); }
  bool Character(bool key, const unichar* units, size_t count);
  bool Date() { return Refuse("a date outside the years 1 to 9999"); }
  bool Number(id number);
  bool TooDeep();
  bool TooMany();
  bool TooLarge();
  bool Raised(NSException* exception);

  // The value refused lies under key or index of the container being left.
  bool InKey(NSString* key);
  bool InIndex(size_t index);

  bool Refused() const { return refused_; }
  // The fault, key path outermost first; message and refusedValue only
  // when nothing was refused here (an empty list to write, say).
  void Fill(RVFormatFault* fault) const;

 private:
  std::string message_;
  std::vector<std::string> path_;  // innermost first
  bool refused_ = false;
};

#endif
