// Values on the command line: what kind a handle holds, the text get
// prints for a scalar, and the typed values set and defaults write take.
#include <cerrno>
#include <charconv>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <typeinfo>

#include "KeyPath.h"
#include "Platform/Text/RVBase64.h"

namespace cli {

namespace {

// Days from 1970-01-01 to the proleptic Gregorian date, and back (the
// civil-calendar formulas counted in 400-year eras), so that every year
// from 1 to 9999 works whatever the C library's gmtime does before 1900.
long long DaysFromCivil(long long year, unsigned month, unsigned day) {
  year -= month <= 2;
  long long era = (year >= 0 ? year : year - 399) / 400;
  unsigned yearOfEra = static_cast<unsigned>(year - era * 400);
  unsigned dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  unsigned dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * 146097 + static_cast<long long>(dayOfEra) - 719468;
}

void CivilFromDays(long long days, long long& year, unsigned& month, unsigned& day) {
  days += 719468;
  long long era = (days >= 0 ? days : days - 146096) / 146097;
  unsigned dayOfEra = static_cast<unsigned>(days - era * 146097);
  unsigned yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  unsigned dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  unsigned shifted = (5 * dayOfYear + 2) / 153;
  day = dayOfYear - (153 * shifted + 2) / 5 + 1;
  month = shifted < 10 ? shifted + 3 : shifted - 9;
  year = static_cast<long long>(yearOfEra) + era * 400 + (month <= 2);
}

const double kReferenceSince1970 = 978307200.0;


// Reads digits exactly count long at text[at...].
bool Digits(const std::string& text, size_t at, size_t count, unsigned& value) {
  if (at + count > text.size()) return false;
  value = 0;
  for (size_t i = at; i < at + count; ++i) {
    if (text[i] < '0' || text[i] > '9') return false;
    value = value * 10 + static_cast<unsigned>(text[i] - '0');
  }
  return true;
}

// YYYY-MM-DDTHH:MM:SS, optional fraction, then Z or +HH:MM / -HH:MM.
RVDate ParseDate(const std::string& text) {
  const std::string why = "'" + text + "' is not an ISO 8601 date (2026-11-25T10:30:05Z)";
  unsigned year, month, day, hour, minute, second;
  if (!Digits(text, 0, 4, year) || text.size() < 20 || text[4] != '-' ||
      !Digits(text, 5, 2, month) || text[7] != '-' || !Digits(text, 8, 2, day) || text[10] != 'T' ||
      !Digits(text, 11, 2, hour) || text[13] != ':' || !Digits(text, 14, 2, minute) ||
      text[16] != ':' || !Digits(text, 17, 2, second)) {
    throw InputError{why};
  }
  size_t at = 19;
  double fraction = 0;
  if (text[at] == '.') {
    size_t start = ++at;
    while (at < text.size() && text[at] >= '0' && text[at] <= '9') ++at;
    if (at == start) throw InputError{why};
    fraction = std::strtod(text.substr(start - 1, at - start + 1).c_str(), nullptr);
  }
  long long offset = 0;
  if (at < text.size() && text[at] == 'Z' && at + 1 == text.size()) {
    // UTC
  } else if (at < text.size() && (text[at] == '+' || text[at] == '-') && at + 6 == text.size() &&
             text[at + 3] == ':') {
    unsigned offsetHours, offsetMinutes;
    if (!Digits(text, at + 1, 2, offsetHours) || !Digits(text, at + 4, 2, offsetMinutes) ||
        offsetHours > 23 || offsetMinutes > 59) {
      throw InputError{why};
    }
    offset = (text[at] == '+' ? 1 : -1) *
             static_cast<long long>(offsetHours * 3600 + offsetMinutes * 60);
  } else {
    throw InputError{why};
  }
  static const unsigned kDays[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  if (year < 1 || month < 1 || month > 12 || day < 1 || day > kDays[month - 1] ||
      (month == 2 && day == 29 && !leap) || hour > 23 || minute > 59 || second > 59) {
    throw InputError{"'" + text + "' is no date of the years 1 to 9999"};
  }
  long long seconds =
      DaysFromCivil(year, month, day) * 86400 + hour * 3600 + minute * 60 + second - offset;
  return RVDate::DateWithTimeIntervalSince1970(static_cast<double>(seconds) + fraction);
}

std::unique_ptr<RVObject> Integer(const std::string& text) {
  const std::string why = "'" + text + "' is not an integer";
  if (text.empty() || std::isspace(static_cast<unsigned char>(text[0]))) throw InputError{why};
  errno = 0;
  char* end = nullptr;
  long long value = std::strtoll(text.c_str(), &end, 10);
  if (*end != '\0') throw InputError{why};
  if (errno != ERANGE) return std::make_unique<RVNumber>(static_cast<long>(value));
  // Above the signed range, the unsigned one still holds it.
  if (text[0] != '-') {
    errno = 0;
    unsigned long long big = std::strtoull(text.c_str(), &end, 10);
    if (errno != ERANGE) return std::make_unique<RVNumber>(static_cast<unsigned long>(big));
  }
  throw InputError{"'" + text + "' does not fit in 64 bits"};
}

}  // namespace

std::string DateText(const RVDate& date) {
  double seconds = std::floor(date.TimeIntervalSinceRefereceDate() + kReferenceSince1970);
  if (!std::isfinite(seconds) || std::fabs(seconds) > 1e15) return "invalid date";
  long long whole = static_cast<long long>(seconds);
  long long days = whole >= 0 ? whole / 86400 : -((-whole + 86399) / 86400);
  long long inDay = whole - days * 86400;
  long long year;
  unsigned month, day;
  CivilFromDays(days, year, month, day);
  char text[96];
  std::snprintf(text, sizeof text, "%04lld-%02u-%02uT%02lld:%02lld:%02lldZ", year, month, day,
                inDay / 3600, inDay / 60 % 60, inDay % 60);
  return text;
}

Kind KindOf(const RVObject& value) {
  switch (RVPropertyList::KindOf(value)) {
    case RVPropertyList::Kind::kNull: return Kind::Null;
    case RVPropertyList::Kind::kString: return Kind::String;
    case RVPropertyList::Kind::kInteger:
    case RVPropertyList::Kind::kUnsignedInteger: return Kind::Integer;
    case RVPropertyList::Kind::kReal: return Kind::Real;
    case RVPropertyList::Kind::kBoolean: return Kind::Boolean;
    case RVPropertyList::Kind::kDate: return Kind::Date;
    case RVPropertyList::Kind::kData: return Kind::Data;
    case RVPropertyList::Kind::kArray: return Kind::Array;
    case RVPropertyList::Kind::kDictionary: return Kind::Dictionary;
    case RVPropertyList::Kind::kOther: break;
  }
  return Kind::Other;
}

const char* KindName(Kind kind) {
  switch (kind) {
    case Kind::String: return "string";
    case Kind::Integer: return "integer";
    case Kind::Real: return "real";
    case Kind::Boolean: return "boolean";
    case Kind::Date: return "date";
    case Kind::Data: return "data";
    case Kind::Array: return "array";
    case Kind::Dictionary: return "dictionary";
    case Kind::Null: return "null";
    case Kind::Other: break;
  }
  return nullptr;
}

std::string ScalarText(const RVObject& value) {
  switch (KindOf(value)) {
    case Kind::String: return Utf8(static_cast<const RVString&>(value));
    case Kind::Integer:
      // The number's own text: it knows whether it is signed.
      return Utf8(static_cast<const RVNumber&>(value).StringValue());
    case Kind::Real: return RealText(static_cast<double>(static_cast<const RVNumber&>(value)));
    case Kind::Boolean: return BoolOf(value) ? "true" : "false";
    case Kind::Date: return DateText(static_cast<const RVDate&>(value));
    case Kind::Data: {
      const RVData& data = static_cast<const RVData&>(value);
      return RVBase64Encode(data.Bytes(), data.Length());
    }
    case Kind::Null: return "null";
    default: return Utf8(value.Description());
  }
}

bool IsValueType(const std::string& word) {
  return word == "-string" || word == "-int" || word == "-float" || word == "-bool" ||
         word == "-date" || word == "-data" || word == "-json";
}

std::unique_ptr<RVObject> TypedValue(const std::string& type, const std::string& text) {
  if (type == "-string") return std::make_unique<RVString>(FromUtf8(text));
  if (type == "-int") return Integer(text);
  if (type == "-float") {
    errno = 0;
    char* end = nullptr;
    double value = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || errno == ERANGE || !std::isfinite(value)) {
      throw InputError{"'" + text + "' is not a finite number"};
    }
    return std::make_unique<RVNumber>(value);
  }
  if (type == "-bool") {
    std::string word;
    for (char c : text) word += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    // The platform's boolean numbers: a property list keeps them as booleans.
    if (word == "true" || word == "yes" || word == "1") return std::make_unique<RVNumber>(true);
    if (word == "false" || word == "no" || word == "0") return std::make_unique<RVNumber>(false);
    throw InputError{"'" + text + "' is not a boolean (true, false, yes, no, 1 or 0)"};
  }
  if (type == "-date") return std::make_unique<RVDate>(ParseDate(text));
  if (type == "-data") {
    std::string bytes = DecodeBase64(text);
    return std::make_unique<RVData>(
        RVData::DataWithBytes(bytes.data(), static_cast<unsigned int>(bytes.size())));
  }
  return ParseJsonValue(text);  // -json
}

std::string DecodeBase64(const std::string& text) {
  std::string bytes;
  RVBase64Fault fault;
  if (RVBase64Decode(text.data(), text.size(), bytes, &fault)) return bytes;
  std::string at = " at offset " + std::to_string(fault.offset);
  if (fault.kind == RVBase64Fault::kBadCharacter) throw InputError{"invalid Base64 character" + at};
  if (fault.kind == RVBase64Fault::kAfterPadding) {
    throw InputError{"Base64 text after '=' padding" + at};
  }
  throw InputError{"truncated Base64 text"};
}

}  // namespace cli
