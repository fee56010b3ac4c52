#import <Foundation/Foundation.h>
#include <objc/runtime.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "Platform/RVBase64Alphabet.h"
#include "Platform/RVPropertyList.h"
#include "Platform/RVXMLPropertyListWriter.h"

// One pass over the tree, appending to one string. Each object's class is
// looked up once in a small table of the classes met so far (class
// clusters have few concrete classes), so the common case costs a pointer
// compare instead of a chain of -isKindOfClass: messages.

namespace {

const char kHead[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";
const char kTail[] = "</plist>";

enum class Kind { String, PlatformBool, LibraryBool, Number, Date, Data, Dictionary, Array, Other };

// The classes a property list is made of, looked up once per write.
struct Roots {
  Class string = [NSString class];
  Class number = [NSNumber class];
  Class platformBool = object_getClass([NSNumber numberWithBool:YES]);
  Class libraryBool = objc_lookUpClass("BoolNumber");  // nil where the library is not loaded
  Class date = [NSDate class];
  Class data = [NSData class];
  Class dictionary = [NSDictionary class];
  Class array = [NSArray class];
};

// Days from 1970-01-01 to 1 March of year 0 plus era arithmetic: the
// proleptic Gregorian day for days since 1970-01-01.
void CivilFromDays(int64_t z, int64_t* year, unsigned* month, unsigned* day) {
  z += 719468;
  int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  unsigned doe = static_cast<unsigned>(z - era * 146097);
  unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  int64_t y = static_cast<int64_t>(yoe) + era * 400;
  unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  unsigned mp = (5 * doy + 2) / 153;
  *day = doy - (153 * mp + 2) / 5 + 1;
  *month = mp < 10 ? mp + 3 : mp - 9;
  *year = y + (*month <= 2);
}

class Writer {
 public:
  explicit Writer(std::string* out) : out_(*out) {}

  bool Write(id root) {
    out_.clear();
    out_.append(kHead, sizeof kHead - 1);
    if (root == nil || !Value(root, 0)) return false;
    out_.append(kTail, sizeof kTail - 1);
    return out_.size() <= kRVPropertyListMaxBytes;
  }

 private:
  struct Entry {
    id key;
    id value;
    size_t offset;  // of the key's UTF-16 units in keyUnits_
    size_t length;
    bool ascii;
  };

  Kind KindOf(id object) {
    Class cls = object_getClass(object);
    for (const auto& known : kinds_)
      if (known.first == cls) return known.second;
    Kind kind = Kind::Other;
    for (Class c = cls; c != Nil; c = class_getSuperclass(c)) {
      if (c == roots_.string) kind = Kind::String;
      else if (c == roots_.platformBool) kind = Kind::PlatformBool;
      else if (c == roots_.libraryBool) kind = Kind::LibraryBool;
      else if (c == roots_.number) kind = Kind::Number;
      else if (c == roots_.date) kind = Kind::Date;
      else if (c == roots_.data) kind = Kind::Data;
      else if (c == roots_.dictionary) kind = Kind::Dictionary;
      else if (c == roots_.array) kind = Kind::Array;
      else continue;
      break;
    }
    kinds_.emplace_back(cls, kind);
    return kind;
  }

  void Indent(unsigned level) {
    unsigned columns = level * 4;
    out_.append(columns / 8, '\t');
    out_.append(columns % 8, ' ');
  }

  void Line(unsigned level, const char* text, size_t length) {
    Indent(level);
    out_.append(text, length);
    out_.push_back('\n');
  }

  // The text of units as element content. False for what XML 1.0 cannot
  // hold and for unpaired surrogates.
  bool Text(const unichar* units, size_t count) {
    size_t i = 0;
    while (i < count) {
      unichar c = units[i];
      if (c < 0x80) {
        if (c >= 0x20) {
          switch (c) {
            case '&': out_.append("&amp;", 5); break;
            case '<': out_.append("&lt;", 4); break;
            case '>': out_.append("&gt;", 4); break;
            case '"': out_.append("&quot;", 6); break;
            case '\'': out_.append("&apos;", 6); break;
            default: out_.push_back(static_cast<char>(c));
          }
        } else if (c == '\t' || c == '\n') {
          out_.push_back(static_cast<char>(c));
        } else if (c == '\r') {
          out_.append("&#13;", 5);
        } else {
          return false;
        }
        ++i;
        continue;
      }
      uint32_t code = c;
      if (c >= 0xD800 && c <= 0xDFFF) {
        if (c >= 0xDC00 || i + 1 >= count || units[i + 1] < 0xDC00 || units[i + 1] > 0xDFFF)
          return false;
        code = 0x10000 + ((static_cast<uint32_t>(c) - 0xD800) << 10) + (units[i + 1] - 0xDC00);
        ++i;
      } else if (c == 0xFFFE || c == 0xFFFF) {
        return false;
      }
      ++i;
      char utf8[4];
      size_t n;
      if (code < 0x800) {
        utf8[0] = static_cast<char>(0xC0 | (code >> 6));
        utf8[1] = static_cast<char>(0x80 | (code & 0x3F));
        n = 2;
      } else if (code < 0x10000) {
        utf8[0] = static_cast<char>(0xE0 | (code >> 12));
        utf8[1] = static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        utf8[2] = static_cast<char>(0x80 | (code & 0x3F));
        n = 3;
      } else {
        utf8[0] = static_cast<char>(0xF0 | (code >> 18));
        utf8[1] = static_cast<char>(0x80 | ((code >> 12) & 0x3F));
        utf8[2] = static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        utf8[3] = static_cast<char>(0x80 | (code & 0x3F));
        n = 4;
      }
      out_.append(utf8, n);
    }
    return true;
  }

  // Appends the string's UTF-16 units to buffer; answers their count.
  static size_t Units(NSString* string, std::vector<unichar>* buffer) {
    NSUInteger length = [string length];
    size_t start = buffer->size();
    buffer->resize(start + length);
    if (length > 0) [string getCharacters:buffer->data() + start range:NSMakeRange(0, length)];
    return length;
  }

  bool String(NSString* string, unsigned level) {
    textUnits_.clear();
    size_t length = Units(string, &textUnits_);
    Indent(level);
    out_.append("<string>", 8);
    if (!Text(textUnits_.data(), length)) return false;
    out_.append("</string>\n", 10);
    return true;
  }

  bool Number(NSNumber* number, unsigned level) {
    const char* type = [number objCType];
    char text[40];
    std::to_chars_result result;
    const char* element;
    switch (type == nullptr ? 0 : type[0]) {
      case 'f':
      case 'd': {
        double value = [number doubleValue];
        element = "real";
        if (std::isnan(value)) {
          result = {text + 3, std::errc()};
          memcpy(text, "nan", 3);
        } else {
          result = std::to_chars(text, text + sizeof text, value);
        }
        break;
      }
      case 'Q':
      case 'L':
      case 'I':
      case 'S':
      case 'C':
        element = "integer";
        result = std::to_chars(text, text + sizeof text, [number unsignedLongLongValue]);
        break;
      case 'q':
      case 'l':
      case 'i':
      case 's':
      case 'c':
        element = "integer";
        result = std::to_chars(text, text + sizeof text, [number longLongValue]);
        break;
      default:
        return false;
    }
    if (result.ec != std::errc()) return false;
    size_t name = strlen(element);
    Indent(level);
    out_.push_back('<');
    out_.append(element, name);
    out_.push_back('>');
    out_.append(text, result.ptr);
    out_.append("</", 2);
    out_.append(element, name);
    out_.append(">\n", 2);
    return true;
  }

  bool Date(NSDate* date, unsigned level) {
    double interval = [date timeIntervalSinceReferenceDate];
    // Years 1 to 9999 lie well inside this; beyond it the day arithmetic
    // below is not needed to refuse.
    if (!(interval > -7.0e10 && interval < 2.6e11)) return false;
    int64_t seconds = static_cast<int64_t>(std::floor(interval)) + 978307200;  // since 1970
    int64_t days = seconds >= 0 ? seconds / 86400 : -((-seconds + 86399) / 86400);
    int64_t inDay = seconds - days * 86400;
    int64_t year;
    unsigned month, day;
    CivilFromDays(days, &year, &month, &day);
    if (year < 1 || year > 9999) return false;
    char text[32];
    snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(year), month,
             day, static_cast<int>(inDay / 3600), static_cast<int>(inDay / 60 % 60),
             static_cast<int>(inDay % 60));
    Indent(level);
    out_.append("<date>", 6);
    out_.append(text);
    out_.append("</date>\n", 8);
    return true;
  }

  void Data(NSData* data, unsigned level) {
    const unsigned char* p = static_cast<const unsigned char*>([data bytes]);
    size_t n = [data length];
    Indent(level);
    out_.append("<data>\n", 7);
    size_t start = out_.size();
    out_.resize(start + (n + 2) / 3 * 4);
    char* o = &out_[start];
    size_t i = 0;
    for (; i + 3 <= n; i += 3) {
      uint32_t group = (uint32_t(p[i]) << 16) | (uint32_t(p[i + 1]) << 8) | p[i + 2];
      *o++ = kRVBase64Alphabet[group >> 18];
      *o++ = kRVBase64Alphabet[(group >> 12) & 63];
      *o++ = kRVBase64Alphabet[(group >> 6) & 63];
      *o++ = kRVBase64Alphabet[group & 63];
    }
    if (i < n) {
      uint32_t group = uint32_t(p[i]) << 16;
      if (i + 1 < n) group |= uint32_t(p[i + 1]) << 8;
      *o++ = kRVBase64Alphabet[group >> 18];
      *o++ = kRVBase64Alphabet[(group >> 12) & 63];
      *o++ = i + 1 < n ? kRVBase64Alphabet[(group >> 6) & 63] : '=';
      *o++ = '=';
    }
    out_.append("</data>\n", 8);
  }

  bool Less(const Entry& a, const Entry& b) const {
    const unichar* x = keyUnits_.data() + a.offset;
    const unichar* y = keyUnits_.data() + b.offset;
    if (!a.ascii || !b.ascii) {
      NSComparisonResult order = [a.key compare:b.key];
      if (order != NSOrderedSame) return order == NSOrderedAscending;
    }
    // Code-unit order: what -compare: gives for ASCII text, and the
    // tie-break for distinct keys it holds the same.
    return std::lexicographical_compare(x, x + a.length, y, y + b.length);
  }

  bool Dictionary(NSDictionary* dictionary, unsigned level) {
    NSUInteger count = [dictionary count];
    Indent(level);
    out_.append("<dict>\n", 7);
    if (count > 0) {
      size_t base = entries_.size();
      size_t unitsBase = keyUnits_.size();
      std::vector<id> keys(count), values(count);
      [dictionary getObjects:values.data() andKeys:keys.data()];
      for (NSUInteger i = 0; i < count; ++i) {
        if (KindOf(keys[i]) != Kind::String) return false;
        size_t offset = keyUnits_.size();
        size_t length = Units(keys[i], &keyUnits_);
        bool ascii = true;
        for (size_t k = offset; k < offset + length && ascii; ++k) ascii = keyUnits_[k] < 0x80;
        entries_.push_back(Entry{keys[i], values[i], offset, length, ascii});
      }
      std::sort(entries_.begin() + base, entries_.end(),
                [this](const Entry& a, const Entry& b) { return Less(a, b); });
      for (size_t i = base; i < base + count; ++i) {
        Indent(level + 1);
        out_.append("<key>", 5);
        if (!Text(keyUnits_.data() + entries_[i].offset, entries_[i].length)) return false;
        out_.append("</key>\n", 7);
        if (!Value(entries_[i].value, level + 1)) return false;
      }
      entries_.resize(base);
      keyUnits_.resize(unitsBase);
    }
    Line(level, "</dict>", 7);
    return true;
  }

  bool Array(NSArray* array, unsigned level) {
    NSUInteger count = [array count];
    Indent(level);
    out_.append("<array>\n", 8);
    if (count > 0) {
      std::vector<id> items(count);
      [array getObjects:items.data()];
      for (id item : items)
        if (!Value(item, level + 1)) return false;
    }
    Line(level, "</array>", 8);
    return true;
  }

  bool Value(id object, unsigned level) {
    if (++objects_ > kRVPropertyListMaxObjects) return false;
    switch (KindOf(object)) {
      case Kind::String:
        return String(object, level);
      case Kind::PlatformBool:
      case Kind::LibraryBool:
        if ([object boolValue]) Line(level, "<true/>", 7);
        else Line(level, "<false/>", 8);
        return true;
      case Kind::Number:
        return Number(object, level);
      case Kind::Date:
        return Date(object, level);
      case Kind::Data:
        Data(object, level);
        return true;
      case Kind::Dictionary:
        return level < kRVPropertyListMaxDepth && Dictionary(object, level);
      case Kind::Array:
        return level < kRVPropertyListMaxDepth && Array(object, level);
      case Kind::Other:
        break;
    }
    return false;
  }

  std::string& out_;
  Roots roots_;
  std::vector<std::pair<Class, Kind>> kinds_;
  std::vector<Entry> entries_;      // dictionaries being written, innermost last
  std::vector<unichar> keyUnits_;   // their keys' text
  std::vector<unichar> textUnits_;  // the string being written
  size_t objects_ = 0;
};

}  // namespace

bool RVXMLPropertyListWrite(id list, std::string* out) {
  bool written = false;
  @autoreleasepool {
    @try {
      written = Writer(out).Write(list);
    } @catch (NSException*) {
      written = false;
    }
  }
  return written;
}
