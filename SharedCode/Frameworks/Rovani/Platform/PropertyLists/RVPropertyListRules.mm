#import <Foundation/Foundation.h>
#include <objc/message.h>
#include <objc/runtime.h>

#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

#include "Platform/PropertyLists/RVPropertyListRules.h"
#include "Platform/Text/RVUTF8.h"

namespace {

// The classes a property list holds never change: they are looked up once,
// not at every write (a write of one small value costs less than the look-ups).
struct KnownClasses {
  Class string, number, decimal, platformBool, libraryBool, date, data, dictionary, array, null;
};

const KnownClasses& Known() {
  static const KnownClasses known = {
      [NSString class], [NSNumber class], [NSDecimalNumber class],
      object_getClass([NSNumber numberWithBool:YES]),
      // Nil in a program that links the writers without the library.
      objc_lookUpClass("BoolNumber"),
      [NSDate class], [NSData class], [NSDictionary class], [NSArray class], [NSNull class]};
  return known;
}

}  // namespace

RVPropertyListClasses::RVPropertyListClasses() {
  static thread_local RVPlistClassInfo slots[kSlots];
  slots_ = slots;
  const KnownClasses& known = Known();
  string_ = known.string;
  number_ = known.number;
  decimal_ = known.decimal;
  platformBool_ = known.platformBool;
  libraryBool_ = known.libraryBool;
  date_ = known.date;
  data_ = known.data;
  dictionary_ = known.dictionary;
  array_ = known.array;
  null_ = known.null;
}

void RVPropertyListClasses::Learn(id object, Class cls, RVPlistClassInfo* info) {
  *info = RVPlistClassInfo();
  info->cls = cls;
  // From the class itself towards the root: the nearest known class wins
  // (a decimal number is a number, the platform's boolean too).
  for (Class c = cls; c != Nil; c = class_getSuperclass(c)) {
    if (c == string_) info->kind = RVPlistKind::String;
    else if (c == platformBool_ || c == libraryBool_) info->kind = RVPlistKind::Boolean;
    else if (c == decimal_) info->kind = RVPlistKind::Decimal;
    else if (c == number_) info->kind = RVPlistKind::Number;
    else if (c == date_) info->kind = RVPlistKind::Date;
    else if (c == data_) info->kind = RVPlistKind::Data;
    else if (c == dictionary_) info->kind = RVPlistKind::Dictionary;
    else if (c == array_) info->kind = RVPlistKind::Array;
    else if (c == null_) info->kind = RVPlistKind::Null;
    else continue;
    break;
  }
  auto method = [object](SEL selector) { return objc_msg_lookup(object, selector); };
  switch (info->kind) {
    case RVPlistKind::String:
      info->first = method(@selector(length));
      info->second = method(@selector(getCharacters:range:));
      break;
    case RVPlistKind::Boolean:
      info->first = method(@selector(boolValue));
      break;
    case RVPlistKind::Number:
      info->first = method(@selector(objCType));
      info->second = method(@selector(longLongValue));
      info->third = method(@selector(unsignedLongLongValue));
      info->fourth = method(@selector(doubleValue));
      break;
    case RVPlistKind::Decimal:
      info->first = method(@selector(doubleValue));
      break;
    case RVPlistKind::Date:
      info->first = method(@selector(timeIntervalSinceReferenceDate));
      break;
    case RVPlistKind::Data:
      info->first = method(@selector(bytes));
      info->second = method(@selector(length));
      break;
    case RVPlistKind::Dictionary:
      info->first = method(@selector(count));
      info->second = method(@selector(getObjects:andKeys:));
      break;
    case RVPlistKind::Array:
      info->first = method(@selector(count));
      info->second = method(@selector(getObjects:));
      break;
    case RVPlistKind::Null:
    case RVPlistKind::Other:
      break;
  }
}

namespace {

// A decimal number as significant digits (no leading or trailing zeros)
// and the power of ten of the first; false for text that is no number.
bool Digits(const char* text, std::string* digits, long* exponent) {
  digits->clear();
  const char* p = text;
  if (*p == '-' || *p == '+') ++p;
  long point = 0;  // digits before the decimal point, leading zeros excluded
  bool seenPoint = false, any = false;
  for (; (*p >= '0' && *p <= '9') || *p == '.'; ++p) {
    if (*p == '.') {
      if (seenPoint) return false;
      seenPoint = true;
      continue;
    }
    any = true;
    if (digits->empty() && *p == '0') {
      if (seenPoint) --point;
      continue;
    }
    digits->push_back(*p);
    if (!seenPoint) ++point;
  }
  if (!any) return false;
  long power = 0;
  if (*p == 'e' || *p == 'E') {
    char* end;
    power = strtol(p + 1, &end, 10);
    if (end == p + 1) return false;
    p = end;
  }
  if (*p != '\0') return false;
  while (!digits->empty() && digits->back() == '0') digits->pop_back();
  *exponent = point - 1 + power;
  return true;
}

// Whether value, read as an exact binary fraction, is the decimal text.
bool ExactlyDecimal(double value, const char* text) {
  std::string wanted, have;
  long wantedPower = 0, havePower = 0;
  if (!Digits(text, &wanted, &wantedPower)) return false;
  if (wanted.empty()) return value == 0;
  if (!std::isfinite(value) || (value < 0) != (text[0] == '-')) return false;
  // glibc prints a double's exact expansion; 767 significant digits hold
  // any double's.
  char exact[800];
  snprintf(exact, sizeof exact, "%.766e", std::fabs(value));
  return Digits(exact, &have, &havePower) && have == wanted && havePower == wantedPower;
}

std::string Hex(unsigned value) {
  char text[16];
  snprintf(text, sizeof text, "U+%04X", value);
  return text;
}

// A key as UTF-8 for a key path: an unpaired surrogate as U+FFFD.
std::string KeyText(NSString* key) {
  NSUInteger length = [key length];
  std::vector<unichar> units(length);
  if (length > 0) [key getCharacters:units.data() range:NSMakeRange(0, length)];
  std::string out;
  for (size_t i = 0; i < length; ++i) {
    uint32_t c = units[i];
    if (c >= 0xD800 && c <= 0xDBFF && i + 1 < length && units[i + 1] >= 0xDC00 && units[i + 1] <= 0xDFFF)
      c = 0x10000 + ((c - 0xD800) << 10) + (units[++i] - 0xDC00);
    else if (c >= 0xD800 && c <= 0xDFFF)
      c = 0xFFFD;
    if (c == '.' || c == '\\') out += '\\';
    RVAppendUTF8(&out, c);
  }
  return out;
}

}  // namespace

RVPlistNumber RVPropertyListNumber(id number, const RVPlistClassInfo& info) {
  RVPlistNumber out;
  if (info.kind == RVPlistKind::Decimal) {
    // GNUstep answers the nearest double; the decimal's own text says
    // whether that is its value.
    out.real = reinterpret_cast<double (*)(id, SEL)>(info.first)(number, @selector(doubleValue));
    NSString* text = [number descriptionWithLocale:nil];
    if ([text isEqualToString:@"NaN"] || ExactlyDecimal(out.real, [text UTF8String]))
      out.type = RVPlistNumber::Real;
    return out;
  }
  const char* type = reinterpret_cast<const char* (*)(id, SEL)>(info.first)(number, @selector(objCType));
  switch (type == nullptr ? 0 : type[0]) {
    case 'f':
    case 'd':
      out.type = RVPlistNumber::Real;
      out.real = reinterpret_cast<double (*)(id, SEL)>(info.fourth)(number, @selector(doubleValue));
      break;
    case 'Q':
    case 'L':
    case 'I':
    case 'S':
    case 'C':
      out.type = RVPlistNumber::Unsigned;
      out.unsignedValue = reinterpret_cast<unsigned long long (*)(id, SEL)>(info.third)(
          number, @selector(unsignedLongLongValue));
      break;
    case 'q':
    case 'l':
    case 'i':
    case 's':
    case 'c':
      out.type = RVPlistNumber::Signed;
      out.signedValue =
          reinterpret_cast<long long (*)(id, SEL)>(info.second)(number, @selector(longLongValue));
      break;
    default:
      break;
  }
  return out;
}

size_t RVPropertyListForbiddenUnit(const unichar* units, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    unichar c = units[i];
    if (c < 0x20) {
      if (!RVPropertyListAllowedControl(c)) return i;
    } else if (c >= 0xD800 && c <= 0xDBFF) {
      if (i + 1 >= count || units[i + 1] < 0xDC00 || units[i + 1] > 0xDFFF) return i;
      ++i;
    } else if ((c >= 0xDC00 && c <= 0xDFFF) || c >= 0xFFFE) {
      return i;
    }
  }
  return count;
}

bool RVPropertyListRefusal::Refuse(std::string message) {
  message_ = std::move(message);
  path_.clear();
  refused_ = true;
  return false;
}

bool RVPropertyListRefusal::OtherClass(id object) {
  return Refuse(std::string("a value of class ") + class_getName(object_getClass(object)) +
                ", which a property list cannot hold");
}

bool RVPropertyListRefusal::Character(bool key, const unichar* units, size_t count) {
  size_t at = RVPropertyListForbiddenUnit(units, count);
  unichar c = at < count ? units[at] : 0xFFFD;
  std::string what = c >= 0xD800 && c <= 0xDFFF ? "an unpaired surrogate " + Hex(c)
                     : c < 0x20                 ? "the control character " + Hex(c)
                                                : "the character " + Hex(c);
  return Refuse(std::string(key ? "a key" : "a string") + " with " + what +
                ", which a property list cannot hold");
}

bool RVPropertyListRefusal::Number(id number) {
  if ([number isKindOfClass:[NSDecimalNumber class]])
    return Refuse("the decimal number " + std::string([[number descriptionWithLocale:nil] UTF8String]) +
                  ", which no real holds exactly");
  const char* type = [number objCType];
  return Refuse(std::string("a number of type \"") + (type != nullptr ? type : "") +
                "\", which has no exact form");
}

bool RVPropertyListRefusal::TooDeep() {
  return Refuse("containers nested deeper than " + std::to_string(kRVPropertyListMaxDepth));
}

bool RVPropertyListRefusal::TooMany() {
  return Refuse("more than " + std::to_string(kRVPropertyListMaxObjects) + " objects");
}

bool RVPropertyListRefusal::TooLarge() {
  return Refuse("a list larger than " + std::to_string(kRVPropertyListMaxBytes >> 20) +
                " MB, more than the library reads back");
}

bool RVPropertyListRefusal::Raised(NSException* exception) {
  return Refuse(std::string("a value raised ") + [[exception name] UTF8String] + ": " +
                ([exception reason] != nil ? [[exception reason] UTF8String] : "no reason"));
}

bool RVPropertyListRefusal::InKey(NSString* key) {
  path_.push_back(KeyText(key));
  return false;
}

bool RVPropertyListRefusal::InIndex(size_t index) {
  path_.push_back(std::to_string(index));
  return false;
}

void RVPropertyListRefusal::Fill(RVFormatFault* fault) const {
  if (fault == nullptr) return;
  fault->Clear();
  fault->refusedValue = true;
  fault->message = refused_ ? message_ : "a value that has no exact form in a property list";
  for (size_t i = path_.size(); i-- > 0;) {
    fault->keyPath += path_[i];
    if (i > 0) fault->keyPath += '.';
  }
}
