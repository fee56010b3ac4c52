#import <Foundation/Foundation.h>

#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "Platform/Text/RVBase64Alphabet.h"
#include "Platform/PropertyLists/RVPropertyList.h"
#include "Platform/PropertyLists/RVXMLPropertyList.h"

// A small, non-recursive reader of the XML property-list vocabulary: open
// containers live on an explicit stack bounded by the depth limit, and every
// position is checked against the end of the input before it is read.

namespace {

bool IsSpace(unsigned char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool IsNameChar(unsigned char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         c == '_' || c == '-' || c == '.' || c == ':' || c >= 0x80;
}

std::string Trimmed(const std::string& text) {
  size_t first = 0, last = text.size();
  while (first < last && IsSpace(text[first])) ++first;
  while (last > first && IsSpace(text[last - 1])) --last;
  return text.substr(first, last - first);
}

void AppendUTF8(std::string* out, uint32_t c) {
  if (c < 0x80) {
    out->push_back(static_cast<char>(c));
  } else if (c < 0x800) {
    out->push_back(static_cast<char>(0xC0 | (c >> 6)));
    out->push_back(static_cast<char>(0x80 | (c & 0x3F)));
  } else if (c < 0x10000) {
    out->push_back(static_cast<char>(0xE0 | (c >> 12)));
    out->push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
    out->push_back(static_cast<char>(0x80 | (c & 0x3F)));
  } else {
    out->push_back(static_cast<char>(0xF0 | (c >> 18)));
    out->push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
    out->push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
    out->push_back(static_cast<char>(0x80 | (c & 0x3F)));
  }
}

bool IsXMLChar(uint32_t c) {
  return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) ||
         (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0x10FFFF);
}

// <integer>: decimal with an optional sign, or hexadecimal after 0x; any
// value that fits 64 bits, signed or unsigned.
id MakeInteger(const std::string& raw) {
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

id MakeReal(const std::string& raw) {
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

// Days from 1970-01-01 to the given day of the proleptic Gregorian calendar.
int64_t DaysFromCivil(int64_t y, unsigned m, unsigned d) {
  y -= m <= 2;
  int64_t era = (y >= 0 ? y : y - 399) / 400;
  unsigned yoe = static_cast<unsigned>(y - era * 400);
  unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
  unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + static_cast<int64_t>(doe) - 719468;
}

// <date>: YYYY[-MM[-DD[THH[:MM[:SS]]]]]Z, in UTC.
id MakeDate(const std::string& raw) {
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
id MakeData(const std::string& text) {
  std::vector<unsigned char> bytes;
  bytes.reserve(text.size() / 4 * 3 + 3);
  uint32_t group = 0;
  int filled = 0;
  bool padded = false;
  for (unsigned char c : text) {
    if (IsSpace(c)) continue;
    unsigned int digit = RVBase64DigitPlusOne(c);
    if (c == '=') {
      padded = true;
      continue;
    }
    if (digit == 0) return nil;
    if (padded) return nil;  // nothing after the padding
    group = (group << 6) | (digit - 1);
    if (++filled == 4) {
      bytes.push_back(static_cast<unsigned char>(group >> 16));
      bytes.push_back(static_cast<unsigned char>(group >> 8));
      bytes.push_back(static_cast<unsigned char>(group));
      group = 0;
      filled = 0;
    }
  }
  if (filled == 1) return nil;
  if (filled == 2) bytes.push_back(static_cast<unsigned char>(group >> 4));
  if (filled == 3) {
    bytes.push_back(static_cast<unsigned char>(group >> 10));
    bytes.push_back(static_cast<unsigned char>(group >> 2));
  }
  return [[NSData alloc] initWithBytes:bytes.data() length:bytes.size()];
}

id MakeString(const std::string& text) {
  // GNUstep answers nil for bytes that are not UTF-8, and drops a leading
  // U+FEFF as a byte-order mark: leading ones are counted here and put
  // back through UTF-16, which keeps them.
  size_t marks = 0;
  while (text.compare(marks * 3, 3, "\xEF\xBB\xBF") == 0) ++marks;
  NSString* rest = [[NSString alloc] initWithBytes:text.data() + marks * 3
                                            length:text.size() - marks * 3
                                          encoding:NSUTF8StringEncoding];
  if (marks == 0 || rest == nil) return rest;
  std::string prefix;
  for (size_t i = 0; i < marks; ++i) prefix += "\xFF\xFE";
  NSString* lead = [[NSString alloc] initWithBytes:prefix.data()
                                            length:prefix.size()
                                          encoding:NSUTF16LittleEndianStringEncoding];
  // Appending to a mutable string keeps them; -stringByAppendingString:
  // would drop them again.
  NSMutableString* joined = [[NSMutableString alloc] initWithCapacity:marks + [rest length]];
  [joined appendString:lead];
  [joined appendString:rest];
  NSString* whole = [joined copy];
  [joined release];
  [lead release];
  [rest release];
  return whole;
}

class XMLReader {
 public:
  XMLReader(const unsigned char* bytes, size_t length) : p_(bytes), n_(length) {}

  ~XMLReader() {
    [root_ release];
    for (Frame& frame : stack_) {
      for (id item : frame.items) [item release];
      for (id key : frame.keys) [key release];
      [frame.pendingKey release];
    }
  }

  // The root value, retained, or nil.
  id ReadRoot() {
    if (n_ >= 3 && memcmp(p_, "\xEF\xBB\xBF", 3) == 0) pos_ = 3;
    SkipSpace();
    if (StartsWith("<?xml") && pos_ + 5 < n_ && IsSpace(p_[pos_ + 5])) {
      if (!ReadDeclaration()) return nil;
    }
    if (!SkipMisc(true)) return nil;
    if (StartsWith("<plist") && pos_ + 6 < n_ && !IsNameChar(p_[pos_ + 6])) {
      pos_ += 6;
      bool empty;
      if (!SkipAttributes(&empty) || empty) return nil;
      inPlist_ = true;
    }
    if (!ReadContent()) return nil;
    if (!SkipMisc(false) || pos_ != n_ || root_ == nil) return nil;
    id root = root_;
    root_ = nil;
    return root;
  }

 private:
  struct Frame {
    bool dictionary;
    std::vector<id> items;  // values, retained
    std::vector<id> keys;   // keys of a dictionary, retained
    id pendingKey;          // a key waiting for its value, retained
  };

  bool StartsWith(const char* text) const {
    size_t length = strlen(text);
    return n_ - pos_ >= length && memcmp(p_ + pos_, text, length) == 0;
  }

  void SkipSpace() {
    while (pos_ < n_ && IsSpace(p_[pos_])) ++pos_;
  }

  // Moves past the next occurrence of terminator; false when there is none.
  bool SkipPast(const char* terminator) {
    size_t length = strlen(terminator);
    while (n_ - pos_ >= length) {
      if (memcmp(p_ + pos_, terminator, length) == 0) {
        pos_ += length;
        return true;
      }
      ++pos_;
    }
    return false;
  }

  bool ReadName(std::string* name) {
    size_t start = pos_;
    while (pos_ < n_ && IsNameChar(p_[pos_])) ++pos_;
    if (pos_ == start) return false;
    name->assign(reinterpret_cast<const char*>(p_ + start), pos_ - start);
    return true;
  }

  // Attributes up to the end of a start tag; empty is set for "/>".
  bool SkipAttributes(bool* empty, std::string* encoding = nullptr, bool declaration = false) {
    for (;;) {
      SkipSpace();
      if (pos_ >= n_) return false;
      if (declaration) {
        if (StartsWith("?>")) {
          pos_ += 2;
          return true;
        }
      } else if (p_[pos_] == '>') {
        ++pos_;
        *empty = false;
        return true;
      } else if (StartsWith("/>")) {
        pos_ += 2;
        *empty = true;
        return true;
      }
      std::string name;
      if (!ReadName(&name)) return false;
      SkipSpace();
      if (pos_ >= n_ || p_[pos_] != '=') return false;
      ++pos_;
      SkipSpace();
      if (pos_ >= n_ || (p_[pos_] != '"' && p_[pos_] != '\'')) return false;
      unsigned char quote = p_[pos_++];
      size_t start = pos_;
      while (pos_ < n_ && p_[pos_] != quote && p_[pos_] != '<') ++pos_;
      if (pos_ >= n_ || p_[pos_] != quote) return false;
      if (encoding != nullptr && name == "encoding")
        encoding->assign(reinterpret_cast<const char*>(p_ + start), pos_ - start);
      ++pos_;
    }
  }

  // <?xml ... ?>: the text is UTF-8 (or its ASCII subset); text declared
  // UTF-16 has been converted to UTF-8 before it gets here.
  bool ReadDeclaration() {
    pos_ += 5;
    bool empty;
    std::string encoding = "UTF-8";
    if (!SkipAttributes(&empty, &encoding, true)) return false;
    for (char& c : encoding) c = static_cast<char>(toupper(static_cast<unsigned char>(c)));
    return encoding == "UTF-8" || encoding == "UTF8" || encoding == "US-ASCII" ||
           encoding == "ASCII" || encoding == "UTF-16" || encoding == "UTF-16LE" ||
           encoding == "UTF-16BE";
  }

  // White space, comments, processing instructions and (before the root) a
  // document type declaration.
  bool SkipMisc(bool beforeRoot) {
    for (;;) {
      SkipSpace();
      if (StartsWith("<!--")) {
        pos_ += 4;
        if (!SkipPast("-->")) return false;
      } else if (StartsWith("<?")) {
        pos_ += 2;
        if (!SkipPast("?>")) return false;
      } else if (beforeRoot && StartsWith("<!DOCTYPE")) {
        if (!SkipDoctype()) return false;
      } else {
        return true;
      }
    }
  }

  bool SkipDoctype() {
    pos_ += 9;
    unsigned char quote = 0;
    bool subset = false;
    for (; pos_ < n_; ++pos_) {
      unsigned char c = p_[pos_];
      if (quote != 0) {
        if (c == quote) quote = 0;
      } else if (c == '"' || c == '\'') {
        quote = c;
      } else if (c == '[') {
        subset = true;
      } else if (c == ']') {
        subset = false;
      } else if (c == '>' && !subset) {
        ++pos_;
        return true;
      }
    }
    return false;
  }

  // A character or entity reference after '&'.
  bool ReadReference(std::string* out) {
    size_t end = pos_;
    while (end < n_ && end - pos_ < 12 && p_[end] != ';') ++end;
    if (end >= n_ || p_[end] != ';') return false;
    std::string name(reinterpret_cast<const char*>(p_ + pos_), end - pos_);
    pos_ = end + 1;
    if (name == "amp") out->push_back('&');
    else if (name == "lt") out->push_back('<');
    else if (name == "gt") out->push_back('>');
    else if (name == "quot") out->push_back('"');
    else if (name == "apos") out->push_back('\'');
    else if (name.size() > 1 && name[0] == '#') {
      bool hex = name[1] == 'x';
      const char* first = name.data() + (hex ? 2 : 1);
      const char* last = name.data() + name.size();
      if (first == last) return false;
      uint32_t code = 0;
      auto [stop, error] = std::from_chars(first, last, code, hex ? 16 : 10);
      if (error != std::errc() || stop != last || !IsXMLChar(code)) return false;
      AppendUTF8(out, code);
    } else {
      return false;
    }
    return true;
  }

  // Appends a run of raw text, with line ends made "\n" as XML requires.
  void AppendRaw(std::string* out, size_t start, size_t end) {
    for (size_t i = start; i < end; ++i) {
      unsigned char c = p_[i];
      if (c == '\r') {
        out->push_back('\n');
        if (i + 1 < end && p_[i + 1] == '\n') ++i;
      } else {
        out->push_back(static_cast<char>(c));
      }
    }
  }

  // The text of a leaf element up to its end tag </name>.
  bool ReadText(const std::string& name, std::string* text) {
    for (;;) {
      size_t start = pos_;
      while (pos_ < n_ && p_[pos_] != '<' && p_[pos_] != '&') ++pos_;
      AppendRaw(text, start, pos_);
      if (pos_ >= n_) return false;
      if (p_[pos_] == '&') {
        ++pos_;
        if (!ReadReference(text)) return false;
      } else if (StartsWith("<![CDATA[")) {
        pos_ += 9;
        size_t begin = pos_;
        if (!SkipPast("]]>")) return false;
        AppendRaw(text, begin, pos_ - 3);
      } else if (StartsWith("<!--")) {
        pos_ += 4;
        if (!SkipPast("-->")) return false;
      } else if (StartsWith("<?")) {
        pos_ += 2;
        if (!SkipPast("?>")) return false;
      } else if (StartsWith("</")) {
        pos_ += 2;
        std::string closing;
        if (!ReadName(&closing) || closing != name) return false;
        SkipSpace();
        if (pos_ >= n_ || p_[pos_] != '>') return false;
        ++pos_;
        return true;
      } else {
        return false;  // no element inside a leaf
      }
    }
  }

  // Takes over one reference to value (nil means malformed).
  bool Add(id value) {
    if (value == nil) return false;
    if (++objects_ > kRVPropertyListMaxObjects) {
      [value release];
      return false;
    }
    if (stack_.empty()) {
      if (root_ != nil) {
        [value release];
        return false;
      }
      root_ = value;
      return true;
    }
    Frame& top = stack_.back();
    if (top.dictionary) {
      if (top.pendingKey == nil) {
        [value release];
        return false;
      }
      top.keys.push_back(top.pendingKey);
      top.pendingKey = nil;
    }
    top.items.push_back(value);
    return true;
  }

  bool AddKey(id key) {
    if (key == nil) return false;
    if (stack_.empty() || !stack_.back().dictionary || stack_.back().pendingKey != nil) {
      [key release];
      return false;
    }
    stack_.back().pendingKey = key;
    return true;
  }

  bool CloseContainer(const std::string& name) {
    if (stack_.empty()) return false;
    Frame& top = stack_.back();
    if (name != (top.dictionary ? "dict" : "array") || top.pendingKey != nil) return false;
    id made;
    if (top.dictionary) {
      made = [[NSDictionary alloc] initWithObjects:top.items.data()
                                           forKeys:top.keys.data()
                                             count:top.items.size()];
    } else {
      made = [[NSArray alloc] initWithObjects:top.items.data() count:top.items.size()];
    }
    for (id item : top.items) [item release];
    for (id key : top.keys) [key release];
    stack_.pop_back();
    return Add(made);
  }

  // Elements up to the end of the root value (and of <plist> around it).
  bool ReadContent() {
    for (;;) {
      SkipSpace();
      if (pos_ >= n_) return false;
      if (p_[pos_] != '<') return false;  // no text between elements
      if (StartsWith("<!--")) {
        pos_ += 4;
        if (!SkipPast("-->")) return false;
        continue;
      }
      if (StartsWith("<?")) {
        pos_ += 2;
        if (!SkipPast("?>")) return false;
        continue;
      }
      if (StartsWith("</")) {
        pos_ += 2;
        std::string name;
        if (!ReadName(&name)) return false;
        SkipSpace();
        if (pos_ >= n_ || p_[pos_] != '>') return false;
        ++pos_;
        if (name == "plist") {
          return inPlist_ && stack_.empty() && root_ != nil;
        }
        if (!CloseContainer(name)) return false;
        if (stack_.empty() && !inPlist_) return true;
        continue;
      }
      ++pos_;
      std::string name;
      if (!ReadName(&name)) return false;
      bool empty;
      if (!SkipAttributes(&empty)) return false;
      if (stack_.empty() && root_ != nil) return false;  // one value only
      if (name == "dict" || name == "array") {
        if (empty) {
          id made = name == "dict" ? [[NSDictionary alloc] init] : [[NSArray alloc] init];
          if (!Add(made)) return false;
        } else {
          if (stack_.size() >= kRVPropertyListMaxDepth) return false;
          stack_.push_back(Frame{name == "dict", {}, {}, nil});
          continue;
        }
      } else if (!ReadLeaf(name, empty)) {
        return false;
      }
      if (stack_.empty() && !inPlist_) return true;
    }
  }

  bool ReadLeaf(const std::string& name, bool empty) {
    std::string text;
    if (!empty && !ReadText(name, &text)) return false;
    if (name == "key") return AddKey(MakeString(text));
    if (name == "string") return Add(MakeString(text));
    if (name == "true" || name == "false") {
      if (!Trimmed(text).empty()) return false;
      return Add([[NSNumber numberWithBool:name == "true"] retain]);
    }
    if (name == "integer") return Add(MakeInteger(text));
    if (name == "real") return Add(MakeReal(text));
    if (name == "date") return Add(MakeDate(text));
    if (name == "data") return Add(MakeData(text));
    return false;
  }

  const unsigned char* p_;
  size_t n_;
  size_t pos_ = 0;
  bool inPlist_ = false;
  size_t objects_ = 0;
  id root_ = nil;
  std::vector<Frame> stack_;
};

}  // namespace

id RVXMLPropertyListRead(const unsigned char* bytes, size_t length) {
  return RVReadPropertyListWith<XMLReader>(bytes, length);
}
