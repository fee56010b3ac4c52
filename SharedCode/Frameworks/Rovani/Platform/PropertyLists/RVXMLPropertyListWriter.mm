#import <Foundation/Foundation.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Text/RVBase64.h"
#include "Platform/Text/RVUTF8.h"
#include "Platform/PropertyLists/RVPropertyList.h"
#include "Platform/PropertyLists/RVPropertyListRules.h"
#include "Platform/PropertyLists/RVXMLPropertyListWriter.h"

// One pass over the tree into one malloc'd buffer that becomes the data
// without a copy; what a list may hold is RVPropertyListRules.h's, and
// each class's methods come from its table.

namespace {

const char kHead[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";
const char kTail[] = "</plist>";
const char kPlistElement[] = "<plist version=\"1.0\">\n";

// The most one line's indentation takes: four columns a level, eight
// columns a tab, for levels up to the depth limit.
constexpr size_t kMaxIndent = kRVPropertyListMaxDepth / 2 + 4;
// Room asked for around each element's text (indentation, tags, newline).
constexpr size_t kElementRoom = kMaxIndent + 32;
// Text is escaped in runs of this many UTF-16 units, each at most six
// bytes ("&quot;"), so no request is much larger than the output it makes.
constexpr size_t kTextRun = 4096;

// The output: grows by doubling with realloc (large blocks move by
// remapping, not copying); never beyond the size the library reads back.
class Buffer {
 public:
  ~Buffer() { free(data_); }

  // Room for at least more bytes at the end, or nullptr when that would
  // take the text past the limit or memory runs out.
  char* Reserve(size_t more) {
    if (capacity_ - size_ >= more) return data_ + size_;
    if (size_ + more > kRVPropertyListMaxBytes + kTextRun * 8) return nullptr;
    size_t capacity = std::max({capacity_ * 2, size_ + more, size_t{1} << 12});
    char* grown = static_cast<char*>(realloc(data_, capacity));
    if (grown == nullptr) return nullptr;
    data_ = grown;
    capacity_ = capacity;
    return data_ + size_;
  }
  void Commit(char* end) { size_ = static_cast<size_t>(end - data_); }
  void Clear() { size_ = 0; }
  size_t Size() const { return size_; }
  const char* Bytes() const { return data_; }
  // Hands the block over to the caller, who frees it.
  char* Release() {
    char* data = data_;
    data_ = nullptr;
    size_ = capacity_ = 0;
    return data;
  }

 private:
  char* data_ = nullptr;
  size_t size_ = 0;
  size_t capacity_ = 0;
};

inline char* Put(char* p, const char* text, size_t length) {
  memcpy(p, text, length);
  return p + length;
}
template <size_t N>
inline char* Put(char* p, const char (&text)[N]) {
  return Put(p, text, N - 1);
}

inline char* Indent(char* p, unsigned level) {
  unsigned columns = level * 4;
  memset(p, '\t', columns / 8);
  p += columns / 8;
  memset(p, ' ', columns % 8);
  return p + columns % 8;
}

// Days since 1970-01-01 as a proleptic Gregorian date.
void CivilFromDays(int64_t z, int64_t* year, unsigned* month, unsigned* day) {
  z += 719468;
  int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  unsigned doe = static_cast<unsigned>(z - era * 146097);
  unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  unsigned mp = (5 * doy + 2) / 153;
  *day = doy - (153 * mp + 2) / 5 + 1;
  *month = mp < 10 ? mp + 3 : mp - 9;
  *year = static_cast<int64_t>(yoe) + era * 400 + (*month <= 2);
}

char* TwoDigits(char* p, unsigned value) {
  p[0] = static_cast<char>('0' + value / 10);
  p[1] = static_cast<char>('0' + value % 10);
  return p + 2;
}

class Writer {
 public:
  bool Write(id root) {
    char* p = out_.Reserve(sizeof kHead);
    if (p == nullptr) return refusal_.TooLarge();
    out_.Commit(Put(p, kHead));
    if (root == nil) return refusal_.Refuse("no list (nil)");
    if (!Value(root, 0)) return false;
    p = out_.Reserve(sizeof kTail);
    if (p == nullptr) return refusal_.TooLarge();
    out_.Commit(Put(p, kTail));
    return out_.Size() <= kRVPropertyListMaxBytes || refusal_.TooLarge();
  }

  // The <plist> element alone (no declaration, no document type, which
  // readers take as read when missing) of an array of count items, without
  // making the array: for records too small to pay for either.
  bool WriteItems(const id* items, size_t count) {
    char* p = out_.Reserve(sizeof kPlistElement);
    if (p == nullptr) return refusal_.TooLarge();
    out_.Commit(Put(p, kPlistElement));
    ++objects_;
    if (!Line(0, "<array>", 7)) return false;
    for (size_t i = 0; i < count; ++i)
      if (!Value(items[i], 1)) return refusal_.InIndex(i);
    if (!Line(0, "</array>", 8)) return false;
    p = out_.Reserve(sizeof kTail);
    if (p == nullptr) return refusal_.TooLarge();
    out_.Commit(Put(p, kTail));
    return true;
  }

  // Back to a new writer's state, keeping the memory it has grown.
  void Reset() {
    out_.Clear();
    refusal_ = RVPropertyListRefusal();
    entries_.clear();
    keyUnits_.clear();
    scratch_.clear();
    textUnits_.clear();
    objects_ = 0;
  }

  Buffer& Output() { return out_; }
  RVPropertyListRefusal& Refusal() { return refusal_; }

 private:
  struct Entry {
    id key;
    id value;
    size_t offset;  // of the key's UTF-16 units in keyUnits_
    size_t length;
    bool ascii;
  };

  // Writes units as element content. False for what XML 1.0 cannot hold
  // and for unpaired surrogates.
  bool Text(const unichar* units, size_t count, bool key) {
    size_t i = 0;
    while (i < count) {
      size_t stop = std::min(count, i + kTextRun);
      char* p = out_.Reserve((stop - i) * 6 + 4);
      if (p == nullptr) return refusal_.TooLarge();
      while (i < stop) {
        unichar c = units[i++];
        if (c < 0x80) {
          if (c >= 0x20) {
            switch (c) {
              case '&': p = Put(p, "&amp;"); break;
              case '<': p = Put(p, "&lt;"); break;
              case '>': p = Put(p, "&gt;"); break;
              case '"': p = Put(p, "&quot;"); break;
              case '\'': p = Put(p, "&apos;"); break;
              default: *p++ = static_cast<char>(c);
            }
          } else if (c == '\t' || c == '\n') {
            *p++ = static_cast<char>(c);
          } else if (c == '\r') {
            p = Put(p, "&#13;");  // a raw CR comes back as LF from any reader
          } else {
            return refusal_.Character(key, units, count);
          }
        } else if (c < 0xD800 || (c > 0xDFFF && c < 0xFFFE)) {
          p = RVPutUTF8(p, c);
        } else if (c <= 0xDBFF && i < count && units[i] >= 0xDC00 && units[i] <= 0xDFFF) {
          p = RVPutUTF8(p, 0x10000 + ((static_cast<uint32_t>(c) - 0xD800) << 10) + (units[i++] - 0xDC00));
        } else {
          return refusal_.Character(key, units, count);  // a lone surrogate, U+FFFE, U+FFFF
        }
      }
      out_.Commit(p);
    }
    return true;
  }

  // <name>text</name> on a line of its own.
  bool Element(unsigned level, const char* open, size_t openLength, const char* text,
               size_t length, const char* close, size_t closeLength) {
    char* p = out_.Reserve(kElementRoom + length);
    if (p == nullptr) return refusal_.TooLarge();
    p = Indent(p, level);
    p = Put(p, open, openLength);
    p = Put(p, text, length);
    p = Put(p, close, closeLength);
    *p++ = '\n';
    out_.Commit(p);
    return true;
  }

  bool Line(unsigned level, const char* text, size_t length) {
    return Element(level, text, length, "", 0, "", 0);
  }

  bool String(id string, const RVPlistClassInfo& info, unsigned level) {
    textUnits_.clear();
    size_t length = RVPropertyListUnits(string, info, &textUnits_);
    char* p = out_.Reserve(kElementRoom);
    if (p == nullptr) return refusal_.TooLarge();
    out_.Commit(Put(Indent(p, level), "<string>"));
    if (!Text(textUnits_.data(), length, false)) return false;
    p = out_.Reserve(16);
    if (p == nullptr) return refusal_.TooLarge();
    out_.Commit(Put(p, "</string>\n"));
    return true;
  }

  bool Number(id number, const RVPlistClassInfo& info, unsigned level) {
    RVPlistNumber value = RVPropertyListNumber(number, info);
    char text[40];
    char* end;
    switch (value.type) {
      case RVPlistNumber::Real:
        // to_chars gives the shortest text that reads back to the same
        // double, and "inf" and "-inf"; every NaN is written "nan".
        end = std::isnan(value.real) ? Put(text, "nan")
                                     : std::to_chars(text, text + sizeof text, value.real).ptr;
        return Element(level, "<real>", 6, text, static_cast<size_t>(end - text), "</real>", 7);
      case RVPlistNumber::Unsigned:
        end = std::to_chars(text, text + sizeof text, value.unsignedValue).ptr;
        break;
      case RVPlistNumber::Signed:
        end = std::to_chars(text, text + sizeof text, value.signedValue).ptr;
        break;
      default:
        return refusal_.Number(number);
    }
    return Element(level, "<integer>", 9, text, static_cast<size_t>(end - text), "</integer>", 10);
  }

  bool Date(id date, const RVPlistClassInfo& info, unsigned level) {
    double interval = reinterpret_cast<double (*)(id, SEL)>(info.first)(
        date, @selector(timeIntervalSinceReferenceDate));
    if (!RVPropertyListDateInRange(interval)) return refusal_.Date();
    int64_t seconds = static_cast<int64_t>(std::floor(interval)) + 978307200;  // since 1970
    int64_t days = seconds >= 0 ? seconds / 86400 : -((-seconds + 86399) / 86400);
    unsigned inDay = static_cast<unsigned>(seconds - days * 86400);
    int64_t year;
    unsigned month, day;
    CivilFromDays(days, &year, &month, &day);
    char text[20];
    char* p = TwoDigits(TwoDigits(text, static_cast<unsigned>(year / 100)), static_cast<unsigned>(year % 100));
    *p++ = '-';
    p = TwoDigits(p, month);
    *p++ = '-';
    p = TwoDigits(p, day);
    *p++ = 'T';
    p = TwoDigits(p, inDay / 3600);
    *p++ = ':';
    p = TwoDigits(p, inDay / 60 % 60);
    *p++ = ':';
    p = TwoDigits(p, inDay % 60);
    *p++ = 'Z';
    return Element(level, "<date>", 6, text, static_cast<size_t>(p - text), "</date>", 7);
  }

  // Base64 on the line after <data>, unindented, as the platform writes it.
  bool Data(id data, const RVPlistClassInfo& info, unsigned level) {
    const unsigned char* bytes =
        static_cast<const unsigned char*>(reinterpret_cast<const void* (*)(id, SEL)>(info.first)(data, @selector(bytes)));
    size_t n = reinterpret_cast<NSUInteger (*)(id, SEL)>(info.second)(data, @selector(length));
    if (n > kRVPropertyListMaxBytes) return refusal_.TooLarge();
    char* p = out_.Reserve(kElementRoom + (n + 2) / 3 * 4);
    if (p == nullptr) return refusal_.TooLarge();
    p = Put(Indent(p, level), "<data>\n");
    p = RVBase64EncodeTo(p, bytes, n);
    out_.Commit(Put(p, "</data>\n"));
    return true;
  }

  bool Less(const Entry& a, const Entry& b) const {
    if (!a.ascii || !b.ascii) {
      NSComparisonResult order = [a.key compare:b.key];
      if (order != NSOrderedSame) return order == NSOrderedAscending;
    }
    // Code-unit order: what -compare: gives for ASCII text, and the
    // tie-break for distinct keys that it holds the same.
    const unichar* x = keyUnits_.data() + a.offset;
    const unichar* y = keyUnits_.data() + b.offset;
    return std::lexicographical_compare(x, x + a.length, y, y + b.length);
  }

  bool Dictionary(id dictionary, const RVPlistClassInfo& info, unsigned level) {
    NSUInteger count = reinterpret_cast<NSUInteger (*)(id, SEL)>(info.first)(dictionary, @selector(count));
    if (!Line(level, "<dict>", 6)) return false;
    if (count > 0) {
      if (count > kRVPropertyListMaxObjects) return refusal_.TooMany();
      size_t base = entries_.size();
      size_t unitsBase = keyUnits_.size();
      size_t scratchBase = scratch_.size();
      scratch_.resize(scratchBase + 2 * count);
      id* values = scratch_.data() + scratchBase;
      reinterpret_cast<void (*)(id, SEL, id*, id*)>(info.second)(
          dictionary, @selector(getObjects:andKeys:), values, values + count);
      for (NSUInteger i = 0; i < count; ++i) {
        id key = scratch_[scratchBase + count + i];
        const RVPlistClassInfo& keyInfo = classes_.Of(key);
        if (keyInfo.kind != RVPlistKind::String) return refusal_.NonStringKey();
        size_t offset = keyUnits_.size();
        size_t length = RVPropertyListUnits(key, keyInfo, &keyUnits_);
        bool ascii = true;
        for (size_t k = offset; k < offset + length; ++k) ascii &= keyUnits_[k] < 0x80;
        entries_.push_back(Entry{key, scratch_[scratchBase + i], offset, length, ascii});
      }
      scratch_.resize(scratchBase);
      std::sort(entries_.begin() + static_cast<ptrdiff_t>(base), entries_.end(),
                [this](const Entry& a, const Entry& b) { return Less(a, b); });
      for (size_t i = base; i < base + count; ++i) {
        char* p = out_.Reserve(kElementRoom);
        if (p == nullptr) return refusal_.TooLarge();
        out_.Commit(Put(Indent(p, level + 1), "<key>"));
        if (!Text(keyUnits_.data() + entries_[i].offset, entries_[i].length, true))
          return refusal_.InKey(entries_[i].key);
        p = out_.Reserve(8);
        if (p == nullptr) return refusal_.TooLarge();
        out_.Commit(Put(p, "</key>\n"));
        if (!Value(entries_[i].value, level + 1)) return refusal_.InKey(entries_[i].key);
      }
      entries_.resize(base);
      keyUnits_.resize(unitsBase);
    }
    return Line(level, "</dict>", 7);
  }

  bool Array(id array, const RVPlistClassInfo& info, unsigned level) {
    NSUInteger count = reinterpret_cast<NSUInteger (*)(id, SEL)>(info.first)(array, @selector(count));
    if (!Line(level, "<array>", 7)) return false;
    if (count > 0) {
      if (count > kRVPropertyListMaxObjects) return refusal_.TooMany();
      size_t base = scratch_.size();
      scratch_.resize(base + count);
      reinterpret_cast<void (*)(id, SEL, id*)>(info.second)(array, @selector(getObjects:),
                                                             scratch_.data() + base);
      // Children push their own items after these: index, do not point.
      for (size_t i = base; i < base + count; ++i)
        if (!Value(scratch_[i], level + 1)) return refusal_.InIndex(i - base);
      scratch_.resize(base);
    }
    return Line(level, "</array>", 8);
  }

  bool Value(id object, unsigned level) {
    if (++objects_ > kRVPropertyListMaxObjects) return refusal_.TooMany();
    const RVPlistClassInfo& info = classes_.Of(object);
    switch (info.kind) {
      case RVPlistKind::String:
        return String(object, info, level);
      case RVPlistKind::Boolean:
        if (reinterpret_cast<BOOL (*)(id, SEL)>(info.first)(object, @selector(boolValue)))
          return Line(level, "<true/>", 7);
        return Line(level, "<false/>", 8);
      case RVPlistKind::Number:
      case RVPlistKind::Decimal:
        return Number(object, info, level);
      case RVPlistKind::Date:
        return Date(object, info, level);
      case RVPlistKind::Data:
        return Data(object, info, level);
      case RVPlistKind::Dictionary:
        if (level >= kRVPropertyListMaxDepth) return refusal_.TooDeep();
        return Dictionary(object, info, level);
      case RVPlistKind::Array:
        if (level >= kRVPropertyListMaxDepth) return refusal_.TooDeep();
        return Array(object, info, level);
      case RVPlistKind::Null:
        return refusal_.Null();
      case RVPlistKind::Other:
        break;
    }
    return refusal_.OtherClass(object);
  }

  RVPropertyListClasses classes_;
  RVPropertyListRefusal refusal_;
  Buffer out_;
  std::vector<Entry> entries_;      // dictionaries being written, innermost last
  std::vector<unichar> keyUnits_;   // their keys' text
  std::vector<id> scratch_;         // containers' items being written
  std::vector<unichar> textUnits_;  // the string being written
  size_t objects_ = 0;
};

// Runs write(writer); on success the writer's output holds the text.
// Platform exceptions (a collection that changes under the writer, a method
// that raises) make the write fail like any other refusal.
template <typename Write>
bool Run(Writer* writer, RVFormatFault* fault, Write write) {
  bool written = false;
  @try {
    written = write(writer);
  } @catch (NSException* exception) {
    written = writer->Refusal().Raised(exception);
  }
  if (!written) writer->Refusal().Fill(fault);
  return written;
}

// A whole document, in a pool of its own that drains what the writer's
// messages left behind.
bool Run(id list, Writer* writer, RVFormatFault* fault) {
  bool written = false;
  @autoreleasepool {
    written = Run(writer, fault, [list](Writer* w) { return w->Write(list); });
  }
  return written;
}

}  // namespace

bool RVXMLPropertyListWrite(id list, std::string* out, RVFormatFault* fault) {
  Writer writer;
  if (!Run(list, &writer, fault)) return false;
  out->assign(writer.Output().Bytes(), writer.Output().Size());
  return true;
}

bool RVXMLPropertyListAppendArrayElement(const id* items, size_t count, std::string* out,
                                         RVFormatFault* fault) {
  // Records come one after another: the thread's writer is kept, with the
  // memory it has grown, unless a message the write sends writes one too.
  static thread_local Writer kept;
  static thread_local bool keptInUse = false;
  std::optional<Writer> fresh;
  if (keptInUse) fresh.emplace();
  Writer& writer = keptInUse ? *fresh : kept;
  bool* inUse = keptInUse ? nullptr : &keptInUse;
  if (inUse != nullptr) {
    kept.Reset();
    *inUse = true;
  }
  struct Release {
    bool* flag;
    ~Release() {
      if (flag != nullptr) *flag = false;
    }
  } release{inUse};
  if (!Run(&writer, fault, [=](Writer* w) { return w->WriteItems(items, count); })) return false;
  out->append(writer.Output().Bytes(), writer.Output().Size());
  return true;
}

NSData* RVXMLPropertyListData(id list, RVFormatFault* fault) {
  Writer writer;
  if (!Run(list, &writer, fault)) return nil;
  size_t size = writer.Output().Size();
  return [[[NSData alloc] initWithBytesNoCopy:writer.Output().Release()
                                       length:size
                                 freeWhenDone:YES] autorelease];
}
