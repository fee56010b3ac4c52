#import <Foundation/Foundation.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "Platform/PropertyLists/RVBinaryPropertyList.h"
#include "Platform/PropertyLists/RVPropertyList.h"
#include "Platform/PropertyLists/RVXMLPropertyList.h"
#include "Platform/PropertyLists/RVXMLPropertyListWriter.h"

NSData* RVPropertyListXMLData(id list) { return RVXMLPropertyListData(list); }

namespace {

// ---------------------------------------------------------------------------
// OpenStep text. GNUstep's parser is trusted only with text that this
// checker has walked completely: the same grammar, every string closed,
// every container closed within the depth limit, no more objects than the
// limit, valid UTF-8 inside quotes. Text that fails here never reaches it
// (its failure paths leak, and its format sniffing would hand some bytes to
// GNUstep's private serialisation format).

class OpenStepChecker {
 public:
  OpenStepChecker(const unsigned char* bytes, size_t length) : p_(bytes), n_(length) {}

  // The whole text is one property-list value.
  bool IsPropertyList() {
    pos_ = 0;
    objects_ = 0;
    return Space() == kMore && Item(0) && Space() == kEnd;
  }

  // The whole text is a strings table: entries of key = value; or key;
  // where keys and values are strings.
  bool IsStringsTable() {
    pos_ = 0;
    objects_ = 0;
    for (;;) {
      Gap gap = Space();
      if (gap == kEnd) return true;
      if (gap == kBad || !String() || Space() != kMore) return false;
      if (p_[pos_] == '=') {
        ++pos_;
        if (Space() != kMore || !String() || Space() != kMore) return false;
      }
      if (p_[pos_] != ';') return false;
      ++pos_;
    }
  }

 private:
  enum Gap { kMore, kEnd, kBad };

  static bool IsWhite(unsigned char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\b';
  }

  static bool IsUnquoted(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           (c != 0 && strchr("!#$%&*+-./:?@|~_^", c) != nullptr);
  }

  static bool IsHex(unsigned char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
  }

  // White space and comments; kMore when a character follows.
  Gap Space() {
    while (pos_ < n_) {
      unsigned char c = p_[pos_];
      if (IsWhite(c)) {
        ++pos_;
      } else if (c == '/' && pos_ + 1 < n_ && p_[pos_ + 1] == '/') {
        const void* end = memchr(p_ + pos_, '\n', n_ - pos_);
        if (end == nullptr) return kBad;
        pos_ = static_cast<const unsigned char*>(end) - p_ + 1;
      } else if (c == '/' && pos_ + 1 < n_ && p_[pos_ + 1] == '*') {
        size_t i = pos_ + 2;
        while (i + 1 < n_ && !(p_[i] == '*' && p_[i + 1] == '/')) ++i;
        if (i + 1 >= n_) return kBad;
        pos_ = i + 2;
      } else {
        return kMore;
      }
    }
    return kEnd;
  }

  bool Counted() { return ++objects_ <= kRVPropertyListMaxObjects; }

  // One UTF-8 sequence at i (strict: no overlong forms, no surrogates).
  bool UTF8At(size_t* i) const {
    unsigned char c = p_[*i];
    if (c < 0x80) {
      ++*i;
      return true;
    }
    size_t extra;
    uint32_t code;
    if (c >= 0xC2 && c <= 0xDF) { extra = 1; code = c & 0x1F; }
    else if (c >= 0xE0 && c <= 0xEF) { extra = 2; code = c & 0x0F; }
    else if (c >= 0xF0 && c <= 0xF4) { extra = 3; code = c & 0x07; }
    else return false;
    if (n_ - *i <= extra) return false;
    for (size_t k = 1; k <= extra; ++k) {
      unsigned char next = p_[*i + k];
      if ((next & 0xC0) != 0x80) return false;
      code = (code << 6) | (next & 0x3F);
    }
    if ((extra == 2 && (code < 0x800 || (code >= 0xD800 && code <= 0xDFFF))) ||
        (extra == 3 && (code < 0x10000 || code > 0x10FFFF)))
      return false;
    *i += extra + 1;
    return true;
  }

  bool Quoted() {
    size_t i = pos_ + 1;
    while (i < n_) {
      unsigned char c = p_[i];
      if (c == '"') {
        pos_ = i + 1;
        return Counted();
      }
      if (c == '\\') {
        if (++i >= n_) return false;
      }
      if (!UTF8At(&i)) return false;
    }
    return false;
  }

  bool Unquoted() {
    size_t start = pos_;
    while (pos_ < n_ && IsUnquoted(p_[pos_])) ++pos_;
    return pos_ > start && Counted();
  }

  bool String() { return p_[pos_] == '"' ? Quoted() : Unquoted(); }

  // <*Ivalue>, <*BY>, <*BN>, <*Rvalue>, <*DYYYY-MM-DD HH:MM:SS +ZZZZ>:
  // short, and of a shape GNUstep reads (it copies the value to the stack).
  bool Typed() {
    size_t start = pos_ + 2;
    size_t end = start;
    while (end < n_ && p_[end] != '>' && end - start <= 40) ++end;
    if (end >= n_ || p_[end] != '>' || end - start < 2) return false;
    unsigned char type = p_[start];
    std::string value(reinterpret_cast<const char*>(p_ + start + 1), end - start - 1);
    if (value.size() > 1 && value.front() == '"') {
      value.erase(0, 1);
      if (value.back() == '"') value.pop_back();
    }
    pos_ = end + 1;
    auto all = [&](size_t from, size_t to, const char* allowed) {
      for (size_t i = from; i < to; ++i)
        if (strchr(allowed, value[i]) == nullptr) return false;
      return true;
    };
    switch (type) {
      case 'I':
        return !value.empty() && all(0, value.size(), "+-0123456789") && Counted();
      case 'R':
        return !value.empty() && all(0, value.size(), "+-.eE0123456789") && Counted();
      case 'B':
        return (value == "Y" || value == "N") && Counted();
      case 'D': {
        static const char kShape[] = "dddd-dd-dd dd:dd:dd +dddd";
        if (value.size() != sizeof kShape - 1) return false;
        for (size_t i = 0; i < value.size(); ++i) {
          char want = kShape[i], got = value[i];
          if (want == 'd' ? !(got >= '0' && got <= '9')
                          : want == '+' ? (got != '+' && got != '-') : got != want)
            return false;
        }
        auto two = [&](size_t at) { return (value[at] - '0') * 10 + (value[at + 1] - '0'); };
        int month = two(5), day = two(8), hour = two(11), minute = two(14), second = two(17);
        return month >= 1 && month <= 12 && day >= 1 && day <= 31 && hour <= 23 &&
               minute <= 59 && second <= 59 && Counted();
      }
      default:
        return false;
    }
  }

  // <hex digits in pairs, white space between pairs>
  bool Data() {
    ++pos_;
    for (;;) {
      Gap gap = Space();
      if (gap != kMore) return false;
      if (p_[pos_] == '>') {
        ++pos_;
        return Counted();
      }
      if (pos_ + 1 >= n_ || !IsHex(p_[pos_]) || !IsHex(p_[pos_ + 1])) return false;
      pos_ += 2;
    }
  }

  bool Item(unsigned depth) {
    unsigned char c = p_[pos_];
    if (c == '{' || c == '(') {
      if (depth >= kRVPropertyListMaxDepth || !Counted()) return false;
      bool dictionary = c == '{';
      unsigned char close = dictionary ? '}' : ')';
      unsigned char separator = dictionary ? ';' : ',';
      ++pos_;
      for (;;) {
        if (Space() != kMore) return false;
        if (p_[pos_] == close) {
          ++pos_;
          return true;
        }
        if (dictionary) {
          // Keys are strings; GNUstep would take any value.
          if (!String() || Space() != kMore || p_[pos_] != '=') return false;
          ++pos_;
          if (Space() != kMore) return false;
        }
        if (!Item(depth + 1) || Space() != kMore) return false;
        if (p_[pos_] == separator) {
          ++pos_;
        } else if (p_[pos_] != close) {
          return false;
        }
      }
    }
    if (c == '<') {
      if (pos_ + 1 < n_ && p_[pos_ + 1] == '*') return Typed();
      return Data();
    }
    return String();
  }

  const unsigned char* p_;
  size_t n_;
  size_t pos_ = 0;
  size_t objects_ = 0;
};

// A copy of a property list whose containers and leaves are all immutable
// (GNUstep's text parser answers mutable strings and data).
id ImmutableCopy(id object, unsigned depth) {
  if (depth > kRVPropertyListMaxDepth) return nil;
  if ([object isKindOfClass:[NSString class]] || [object isKindOfClass:[NSData class]])
    return [[object copy] autorelease];
  if ([object isKindOfClass:[NSArray class]]) {
    NSUInteger count = [object count];
    std::vector<id> items(count);
    for (NSUInteger i = 0; i < count; ++i) {
      items[i] = ImmutableCopy([object objectAtIndex:i], depth + 1);
      if (items[i] == nil) return nil;
    }
    return [NSArray arrayWithObjects:items.data() count:count];
  }
  if ([object isKindOfClass:[NSDictionary class]]) {
    NSArray* keys = [object allKeys];
    NSUInteger count = [keys count];
    std::vector<id> copiedKeys(count), values(count);
    for (NSUInteger i = 0; i < count; ++i) {
      id key = [keys objectAtIndex:i];
      copiedKeys[i] = ImmutableCopy(key, depth + 1);
      values[i] = ImmutableCopy([object objectForKey:key], depth + 1);
      if (copiedKeys[i] == nil || values[i] == nil) return nil;
    }
    return [NSDictionary dictionaryWithObjects:values.data() forKeys:copiedKeys.data() count:count];
  }
  return object;  // numbers and dates
}

id ReadOpenStep(const unsigned char* bytes, size_t length) {
  OpenStepChecker checker(bytes, length);
  bool propertyList = checker.IsPropertyList();
  if (!propertyList && !checker.IsStringsTable()) return nil;
  id result = nil;
  @autoreleasepool {
    @try {
      id parsed;
      if (propertyList) {
        NSData* data = [NSData dataWithBytesNoCopy:const_cast<unsigned char*>(bytes)
                                            length:length
                                      freeWhenDone:NO];
        NSPropertyListFormat format;
        NSString* error = nil;
        parsed = [NSPropertyListSerialization propertyListFromData:data
                                                  mutabilityOption:NSPropertyListImmutable
                                                            format:&format
                                                  errorDescription:&error];
      } else {
        NSString* text = [[[NSString alloc] initWithBytes:bytes
                                                   length:length
                                                 encoding:NSUTF8StringEncoding] autorelease];
        parsed = [text propertyListFromStringsFileFormat];
      }
      result = [ImmutableCopy(parsed, 0) retain];
    } @catch (NSException*) {
      result = nil;
    }
  }
  return [result autorelease];
}

bool IsSpaceByte(unsigned char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool StartsWith(const unsigned char* p, size_t n, const char* text) {
  size_t length = strlen(text);
  return n >= length && memcmp(p, text, length) == 0;
}

id ReadText(const unsigned char* bytes, size_t length) {
  // A C string's terminator is not part of the text.
  if (length > 0 && bytes[length - 1] == 0)
    length = strnlen(reinterpret_cast<const char*>(bytes), length);
  size_t start = StartsWith(bytes, length, "\xEF\xBB\xBF") ? 3 : 0;
  size_t first = start;
  while (first < length && IsSpaceByte(bytes[first])) ++first;
  const unsigned char* lead = bytes + first;
  size_t rest = length - first;
  // OpenStep text never has '<' before '?', '!' or a name: that is XML.
  if (StartsWith(lead, rest, "<?") || StartsWith(lead, rest, "<!") ||
      StartsWith(lead, rest, "<plist"))
    return RVXMLPropertyListRead(bytes, length);
  return ReadOpenStep(bytes + start, length - start);
}

}  // namespace

id RVPropertyListFromBytes(const void* bytes, size_t length) {
  if (bytes == nullptr || length == 0 || length > kRVPropertyListMaxBytes) return nil;
  const unsigned char* p = static_cast<const unsigned char*>(bytes);
  if (StartsWith(p, length, "bplist00")) return RVBinaryPropertyListRead(p, length);
  if (length >= 2 && ((p[0] == 0xFF && p[1] == 0xFE) || (p[0] == 0xFE && p[1] == 0xFF))) {
    // UTF-16 text: read as the UTF-8 it converts to.
    NSStringEncoding encoding =
        p[0] == 0xFF ? NSUTF16LittleEndianStringEncoding : NSUTF16BigEndianStringEncoding;
    NSString* text = [[NSString alloc] initWithBytes:p + 2 length:length - 2 encoding:encoding];
    NSData* utf8 = [text dataUsingEncoding:NSUTF8StringEncoding];
    [text release];
    if ([utf8 length] == 0) return nil;
    return ReadText(static_cast<const unsigned char*>([utf8 bytes]), [utf8 length]);
  }
  return ReadText(p, length);
}

id RVPropertyListFromOpenFile(int fd) {
  struct stat info;
  std::vector<unsigned char> contents;
  if (fstat(fd, &info) != 0 || !S_ISREG(info.st_mode) || info.st_size <= 0 ||
      static_cast<unsigned long long>(info.st_size) > kRVPropertyListMaxBytes) {
    return nil;
  }
  // Read at most one byte more than the limit: a file that grew since is
  // refused as well.
  contents.resize(static_cast<size_t>(info.st_size) + 1);
  size_t filled = 0;
  while (filled < contents.size()) {
    ssize_t got = read(fd, contents.data() + filled, contents.size() - filled);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    filled += static_cast<size_t>(got);
  }
  if (filled == 0 || filled > kRVPropertyListMaxBytes) return nil;
  return RVPropertyListFromBytes(contents.data(), filled);
}

id RVPropertyListFromFile(NSString* path) {
  const char* name = [path fileSystemRepresentation];
  if (name == nullptr) return nil;
  int fd = open(name, O_RDONLY | O_CLOEXEC);
  if (fd < 0) return nil;
  id list = RVPropertyListFromOpenFile(fd);
  close(fd);
  return list;
}
