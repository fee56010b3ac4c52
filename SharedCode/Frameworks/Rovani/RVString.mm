#import <Foundation/Foundation.h>
#include <objc/runtime.h>

#include <atomic>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <Rovani/RVString.h>
#include <Rovani/RVArray.h>
#include <Rovani/RVData.h>
#include <Rovani/RVError.h>
#include <Rovani/RVInternalRef.h>
#include <Rovani/RVStringCategories.h>
#include <Rovani/RVUtilities.h>

#include "Platform/CoreFoundation/RVCoreFoundation.h"
#include "Platform/Runtime/RVClassType.h"
#include "Platform/Text/RVEncoding.h"
#include "Platform/Runtime/RVOwned.h"
#include "Platform/Runtime/RVScalars.h"

// ---------------------------------------------------------------------------
// Strings that exist from library load.
//
// C++ constructors of this library run before its Objective-C module is
// registered with the runtime, so they must not send messages. Each string
// adopts its constant literal as it is built, which sends nothing; the first
// message to either is sent after load.
struct RVConstantString {
  static RVString Make(RVId literal) { return RVString(literal, RVString::ConstantObject()); }
  // A handle that takes over the caller's reference to made (+1).
  static RVString Adopt(NSString* made) { return RVString(made, RVString::ConstantObject()); }
};

const RVString kgRVInternalEmptyString = RVConstantString::Make(@"");
const RVString kFilePathSeperator = RVConstantString::Make(@"\\");

// ---------------------------------------------------------------------------
// Construction and assignment

RVString::RVString() : RVObject(kgRVInternalEmptyString.Ref()) {}

RVString::RVString(const RVString& other) : RVObject(other.Ref()) {}

RVString::RVString(RVId obj) : RVObject(obj) {}

RVString::RVString(NSString* str) : RVObject(str) {}

RVString::RVString(CFStringRef str) : RVObject() { operator=(str); }

RVString::RVString(const char* str) : RVObject() { operator=(str); }

RVString::RVString(const unsigned char* str) : RVObject() { operator=(str); }

RVString::RVString(const wchar_t* str) : RVObject() { operator=(str); }

RVString::RVString(const RVObject& other) : RVObject() { operator=(other); }

RVString::~RVString() {}

RVString& RVString::operator=(const RVString& other) {
  RVObject::operator=(other.Ref());
  return *this;
}

RVString& RVString::operator=(RVId obj) {
  RVObject::operator=(obj);
  return *this;
}

RVString& RVString::operator=(NSString* str) {
  RVObject::operator=(str);
  return *this;
}

RVString& RVString::operator=(CFStringRef str) {
  return operator=(RVInternalRef::Convert(str));
}

RVString& RVString::operator=(const char* str) {
  if (str == nullptr) {
    Empty();
    return *this;
  }
  RVOwned<> made = RVAdopt([[NSString alloc] initWithCString:str encoding:NSUTF8StringEncoding]);
  RVObject::operator=(made.Get());
  return *this;
}

RVString& RVString::operator=(const unsigned char* str) {
  return operator=(reinterpret_cast<const char*>(str));
}

RVString& RVString::operator=(const wchar_t* str) {
  // "%S" reads 16-bit units, whatever the width of wchar_t.
  RVOwned<> made =
      RVAdopt([[NSString alloc] initWithFormat:@"%S", reinterpret_cast<const unichar*>(str)]);
  RVObject::operator=(made.Get());
  return *this;
}

RVString& RVString::operator=(const RVObject& other) {
  if ([other.Ref() isKindOfClass:[NSString class]]) {
    RVObject::operator=(other.Ref());
  } else {
    RVObject::operator=(other.Description().Ref());
  }
  return *this;
}

RVString::operator NSString*() const { return Ref(); }

RVString::operator CFStringRef() const { return (CFStringRef)Ref(); }

RVString RVString::ClassType() { return RVString(RVClassTypeText(typeid(RVString))); }

// ---------------------------------------------------------------------------
// Queries

unsigned int RVString::Length() const { return static_cast<unsigned int>([Ref() length]); }

bool RVString::IsEmpty() const { return Ref() == nil || [Ref() length] == 0; }

RVRange RVString::Range() const { return RVRange(0, Length()); }

int RVString::Compare(RVString other) const {
  return static_cast<int>([Ref() compare:other.Ref()]);
}

int RVString::CompareWithOptions(RVString other, unsigned int options) const {
  return static_cast<int>([Ref() compare:other.Ref() options:options]);
}

int RVString::CaseInsensitiveCompare(RVString other) const {
  return static_cast<int>([Ref() compare:other.Ref() options:NSCaseInsensitiveSearch]);
}

// Range answers come back in memory the nil method never writes, so a nil
// string answers (0, 0) without asking.
RVRange RVString::RangeOfString(const RVString& str) const {
  if (Ref() == nil) return RVRange();
  return RVRange([Ref() rangeOfString:str.Ref() options:0]);
}

RVRange RVString::RangeOfStringWithOptions(const RVString& str, unsigned int options) const {
  if (Ref() == nil) return RVRange();
  return RVRange([Ref() rangeOfString:str.Ref() options:options]);
}

RVRange RVString::RangeOfStringWithOptionsInRange(const RVString& str, unsigned int options,
                                                  const RVRange& range) const {
  if (Ref() == nil) return RVRange();
  return RVRange([Ref() rangeOfString:str.Ref() options:options range:(NSRange)range]);
}

bool RVString::HasPrefix(const RVString& prefix) const {
  return [Ref() hasPrefix:prefix.Ref()] ? true : false;
}

bool RVString::HasSuffix(const RVString& suffix) const {
  return [Ref() hasSuffix:suffix.Ref()] ? true : false;
}

double RVString::DoubleValue() const { return RVDoubleValue(Ref()); }

float RVString::FloatValue() const { return RVFloatValue(Ref()); }

int RVString::IntValue() const { return [Ref() intValue]; }

bool RVString::BoolValue() const { return [Ref() boolValue] ? true : false; }

// ---------------------------------------------------------------------------
// Equality

bool RVString::IsEqualToString(const RVString& other) const {
  return [Ref() isEqualToString:other.Ref()] ? true : false;
}
bool RVString::IsEqualToString(RVId other) const { return IsEqualToString(RVString(other)); }
bool RVString::IsEqualToString(const char* other) const { return IsEqualToString(RVString(other)); }
bool RVString::IsEqualToString(const unsigned char* other) const {
  return IsEqualToString(RVString(other));
}
bool RVString::IsEqualToString(const wchar_t* other) const {
  return IsEqualToString(RVString(other));
}

bool RVString::operator==(const RVString& other) const { return IsEqualToString(other); }
bool RVString::operator==(RVId other) const { return IsEqualToString(RVString(other)); }
bool RVString::operator==(NSString* other) const { return IsEqualToString(RVString(other)); }
bool RVString::operator==(const char* other) const { return IsEqualToString(RVString(other)); }
bool RVString::operator==(const unsigned char* other) const {
  return IsEqualToString(RVString(other));
}
bool RVString::operator==(const wchar_t* other) const { return IsEqualToString(RVString(other)); }

bool RVString::operator!=(const RVString& other) const { return !operator==(other); }
bool RVString::operator!=(RVId other) const { return !operator==(other); }
bool RVString::operator!=(NSString* other) const { return !operator==(other); }
bool RVString::operator!=(const char* other) const { return !operator==(other); }
bool RVString::operator!=(const unsigned char* other) const { return !operator==(other); }
bool RVString::operator!=(const wchar_t* other) const { return !operator==(other); }

// ---------------------------------------------------------------------------
// Substrings and transformations

RVString RVString::SubstringToIndex(unsigned int index) const {
  return RVString(static_cast<RVId>([Ref() substringToIndex:index]));
}

RVString RVString::SubstringFromIndex(unsigned int index) const {
  return RVString(static_cast<RVId>([Ref() substringFromIndex:index]));
}

RVString RVString::SubstringWithRange(RVRange range) const {
  RVString result;
  if (IsEmpty() || range.IsEmpty()) return result;

  // Only what the exception says is kept inside the handler; the C++ throw
  // happens after it, outside the Objective-C exception scope. Objects other
  // than NSExceptions are not caught here and pass on unchanged.
  RVOwned<> rangeMessage;
  RVOwned<> otherDescription;
  @try {
    result = static_cast<RVId>([Ref() substringWithRange:(NSRange)range]);
  } @catch (NSException* exception) {
    if ([[exception name] isEqual:NSRangeException]) {
      rangeMessage = RVAdopt([[NSString alloc]
          initWithFormat:@"Exception %@ - %@", [exception name], [exception description]]);
    } else {
      otherDescription = RVOwned<>::Retain([exception description]);
    }
  }

  if (rangeMessage) {
    throw new RVError(RVError::ErrorWithCodeDescriptionAndDomain(
        1, RVString(rangeMessage.Get()), FilePathToDomain(__FILE__)));
  }
  if (otherDescription) throw new RVString(otherDescription.Get());
  return result;
}

RVString RVString::StringByReplacingOccurrencesOfStringWithString(
    const RVString& target, const RVString& replacement) const {
  // The platform's own replace has other matching rules: ours is used
  // whether or not the platform offers one.
  (void)[Ref() respondsToSelector:@selector(stringByReplacingOccurrencesOfString:withString:)];
  return RVString(static_cast<RVId>(
      [Ref() stringByReplacingOccurrencesOfStringMB:target.Ref() withString:replacement.Ref()]));
}

// ---------------------------------------------------------------------------
// Makers

RVString RVString::StringWithFormat(RVString format, ...) {
  va_list args;
  va_start(args, format);
  RVOwned<> made = RVAdopt([[NSString alloc] initWithFormat:format.Ref() arguments:args]);
  va_end(args);
  return RVString(made.Get());
}

// ---------------------------------------------------------------------------
// Concatenation

namespace {

// Whether "%@" renders object as its own characters: a string whose class
// keeps NSString's own descriptions (the string itself). The answer depends
// on the class alone; classes found so are kept (a handful: the platform's
// concrete string classes).
bool RendersAsItself(id object) {
  static std::atomic<const void*> known[8];
  Class type = object_getClass(object);
  for (std::atomic<const void*>& slot : known) {
    const void* seen = slot.load(std::memory_order_relaxed);
    if (seen == reinterpret_cast<const void*>(type)) return true;
    if (seen == nullptr) break;
  }
  static Class stringClass = [NSString class];
  static IMP description = class_getMethodImplementation(stringClass, @selector(description));
  static IMP localeDescription =
      class_getMethodImplementation(stringClass, @selector(descriptionWithLocale:));
  bool isString = false;
  for (Class c = type; c != Nil && !isString; c = class_getSuperclass(c))
    isString = c == stringClass;
  if (!isString || class_getMethodImplementation(type, @selector(description)) != description ||
      class_getMethodImplementation(type, @selector(descriptionWithLocale:)) != localeDescription)
    return false;
  for (std::atomic<const void*>& slot : known) {
    const void* empty = nullptr;
    if (slot.compare_exchange_strong(empty, reinterpret_cast<const void*>(type)) ||
        empty == reinterpret_cast<const void*>(type))
      break;
  }
  return true;
}

// "%@%@" of a copy of left (or "" for nil) and right, made directly from the
// two strings' characters (+1); nil where that route would not give the same
// text: an operand that does not render as itself, a nil right side, a
// leading byte-order mark (which making a string from characters drops), a
// lone surrogate (which it refuses).
NSString* NewDirectJoin(NSString* left, NSString* right) {
  if (right == nil || (left != nil && !RendersAsItself(left)) || !RendersAsItself(right))
    return nil;
  NSUInteger leftLength = [left length];
  NSUInteger rightLength = [right length];
  NSUInteger length = leftLength + rightLength;
  unichar local[256];
  std::vector<unichar> heap;
  unichar* characters = local;
  if (length > sizeof local / sizeof local[0]) {
    heap.resize(length);
    characters = heap.data();
  }
  [left getCharacters:characters range:NSMakeRange(0, leftLength)];
  [right getCharacters:characters + leftLength range:NSMakeRange(0, rightLength)];
  if (length > 0 && characters[0] == 0xFEFF) return nil;
  static Class stringClass = [NSString class];
  return [[stringClass alloc] initWithCharacters:characters length:length];
}

}  // namespace

// The text is what the format "%@%@" makes from a copy of this string (or ""
// for nil) and the other's object once this one is released; strings that
// render as themselves are joined without formatting. Appending a string to
// itself therefore appends what nil renders as, and takes the formatted route.
RVString& RVString::operator+=(const RVString& other) {
  RVOwned<> joined = RVAdopt(&other != this ? NewDirectJoin(Ref(), other.Ref()) : nil);
  if (!joined) {
    RVOwned<> left =
        RVAdopt(Ref() != nil ? [[NSString alloc] initWithString:Ref()] : [[NSString alloc] init]);
    Release();
    joined = RVAdopt([[NSString alloc] initWithFormat:@"%@%@", left.Get(), other.Ref()]);
  } else {
    Release();
  }
  RVObject::operator=(joined.Get());
  return *this;
}

RVString& RVString::operator+=(RVId other) { return operator+=(RVString(other)); }
RVString& RVString::operator+=(const char* other) { return operator+=(RVString(other)); }
RVString& RVString::operator+=(const unsigned char* other) { return operator+=(RVString(other)); }
RVString& RVString::operator+=(const wchar_t* other) { return operator+=(RVString(other)); }

namespace {
// A copy of the left side with the right side appended; both made strings
// first, left before right.
RVString Join(const RVString& left, const RVString& right) {
  NSString* joined = NewDirectJoin(left.Ref(), right.Ref());
  if (joined != nil) return RVConstantString::Adopt(joined);
  RVString result(left);
  result += right;
  return result;
}

template <typename Left, typename Right>
RVString Concatenate(Left left, Right right) {
  RVString leftString(left);
  return Join(leftString, RVString(right));
}
}  // namespace

RVString operator+(const RVString& l, const RVString& r) { return Join(l, r); }
RVString operator+(const RVString& l, CFStringRef r) { return Concatenate(l, r); }
RVString operator+(CFStringRef l, const RVString& r) { return Concatenate(l, r); }
RVString operator+(const RVString& l, RVId r) { return Concatenate(l, r); }
RVString operator+(RVId l, const RVString& r) { return Concatenate(l, r); }
RVString operator+(const RVString& l, NSString* r) { return Concatenate(l, r); }
RVString operator+(NSString* l, const RVString& r) { return Concatenate(l, r); }
RVString operator+(const RVString& l, const char* r) { return Concatenate(l, r); }
RVString operator+(const char* l, const RVString& r) { return Concatenate(l, r); }
RVString operator+(const RVString& l, const unsigned char* r) { return Concatenate(l, r); }
RVString operator+(const unsigned char* l, const RVString& r) { return Concatenate(l, r); }
RVString operator+(const RVString& l, const wchar_t* r) { return Concatenate(l, r); }
RVString operator+(const wchar_t* l, const RVString& r) { return Concatenate(l, r); }

// ---------------------------------------------------------------------------
// Members that hand out arrays

RVArray RVString::ComponentsSeparatedByString(const RVString& separator) const {
  return RVArray([Ref() componentsSeparatedByString:separator.Ref()]);
}
