#import <Foundation/Foundation.h>

#include <charconv>
#include <cstdint>
#include <string>
#include <vector>

#include "Platform/PropertyLists/RVXMLPropertyListValues.h"
#include "Platform/Runtime/RVOwned.h"
#include "Platform/Text/RVBase64.h"

namespace {

bool IsSpace(unsigned char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

std::string Trimmed(const std::string& text) {
  size_t first = 0, last = text.size();
  while (first < last && IsSpace(text[first])) ++first;
  while (last > first && IsSpace(text[last - 1])) --last;
  return text.substr(first, last - first);
}

// Days from 1970-01-01 to the given day of the proleptic Gregorian calendar.
int64_t DaysFromCivil(int64_t y, unsigned m, unsigned d) {
  y -= m <= 2;
  int64_t era = (y >= 0 ? y : y - 399) / 400;
  unsigned yoe = static_cast<unsigned>(y - era * 400);
  unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
  unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + static_cast<int64_t>(doe) - 719468;
}

}  // namespace

// <integer>: decimal with an optional sign, or hexadecimal after 0x; any
// value that fits 64 bits, signed or unsigned.
id RVXMLMakeInteger(const std::string& raw) {
  std::string text = Trimmed(raw);
  if (text.empty()) return nil;
  const char* first = text.data();
  const char* last = first + text.size();
  int base = 10;
  bool negative = false;
  if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
    base = 16;
    first += 2;
  } else if (*first == '-' || *first == '+') {
    negative = *first == '-';
    ++first;
  }
  if (first == last || *first == '+' || *first == '-') return nil;
  uint64_t magnitude = 0;
  auto [end, error] = std::from_chars(first, last, magnitude, base);
  if (error != std::errc() || end != last) return nil;
  if (!negative) {
    if (magnitude <= static_cast<uint64_t>(INT64_MAX))
      return [[NSNumber alloc] initWithLongLong:static_cast<long long>(magnitude)];
    return [[NSNumber alloc] initWithUnsignedLongLong:magnitude];
  }
  if (magnitude > static_cast<uint64_t>(INT64_MAX) + 1) return nil;
  return [[NSNumber alloc] initWithLongLong:static_cast<long long>(0 - magnitude)];
}

id RVXMLMakeReal(const std::string& raw) {
  std::string text = Trimmed(raw);
  const char* first = text.data();
  const char* last = first + text.size();
  if (first != last && *first == '+') ++first;
  if (first == last) return nil;
  double value = 0;
  auto [end, error] = std::from_chars(first, last, value);
  if (error != std::errc() || end != last) return nil;
  return [[NSNumber alloc] initWithDouble:value];
}

// <date>: YYYY[-MM[-DD[THH[:MM[:SS]]]]]Z, in UTC.
id RVXMLMakeDate(const std::string& raw) {
  std::string text = Trimmed(raw);
  size_t at = 0;
  auto number = [&](size_t digits, int* out) {
    if (text.size() - at < digits) return false;
    int value = 0;
    for (size_t i = 0; i < digits; ++i) {
      char c = text[at + i];
      if (c < '0' || c > '9') return false;
      value = value * 10 + (c - '0');
    }
    at += digits;
    *out = value;
    return true;
  };
  auto separator = [&](char c) {
    if (at < text.size() && text[at] == c) {
      ++at;
      return true;
    }
    return false;
  };
  int year = 0, month = 1, day = 1, hour = 0, minute = 0, second = 0;
  if (!number(4, &year)) return nil;
  if (separator('-')) {
    if (!number(2, &month)) return nil;
    if (separator('-')) {
      if (!number(2, &day)) return nil;
      if (separator('T')) {
        if (!number(2, &hour)) return nil;
        if (separator(':')) {
          if (!number(2, &minute)) return nil;
          if (separator(':') && !number(2, &second)) return nil;
        }
      }
    }
  }
  if (!separator('Z') || at != text.size()) return nil;
  static const int kDaysInMonth[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  if (month < 1 || month > 12 || day < 1 || day > kDaysInMonth[month - 1] ||
      (month == 2 && day == 29 && !leap) || hour > 23 || minute > 59 || second > 59)
    return nil;
  int64_t days = DaysFromCivil(year, month, day) - DaysFromCivil(2001, 1, 1);
  double seconds = static_cast<double>(days * 86400 + hour * 3600 + minute * 60 + second);
  return [[NSDate alloc] initWithTimeIntervalSinceReferenceDate:seconds];
}

// <data>: Base64, white space ignored, padding optional at the very end.
id RVXMLMakeData(const std::string& text) {
  std::string bytes;
  if (!RVBase64Decode(text.data(), text.size(), bytes, nullptr, true)) return nil;
  return [[NSData alloc] initWithBytes:bytes.data() length:bytes.size()];
}

id RVNewStringFromUTF8(const std::string& text) {
  // GNUstep answers nil for bytes that are not UTF-8, and drops a leading
  // U+FEFF as a byte-order mark: leading ones are counted here and put
  // back through UTF-16, which keeps them.
  size_t marks = 0;
  while (text.compare(marks * 3, 3, "\xEF\xBB\xBF") == 0) ++marks;
  id made = [[NSString alloc] initWithBytes:text.data() + marks * 3
                                     length:text.size() - marks * 3
                                   encoding:NSUTF8StringEncoding];
  if (marks == 0 || made == nil) return made;
  RVOwned<NSString*> rest = RVAdopt(made);
  std::string prefix;
  for (size_t i = 0; i < marks; ++i) prefix += "\xFF\xFE";
  RVOwned<NSString*> lead =
      RVAdopt([[NSString alloc] initWithBytes:prefix.data()
                                       length:prefix.size()
                                     encoding:NSUTF16LittleEndianStringEncoding]);
  // Appending to a mutable string keeps them; -stringByAppendingString:
  // would drop them again.
  RVOwned<NSMutableString*> joined =
      RVAdopt([[NSMutableString alloc] initWithCapacity:marks + [rest.Get() length]]);
  [joined.Get() appendString:lead.Get()];
  [joined.Get() appendString:rest.Get()];
  return [joined.Get() copy];
}

